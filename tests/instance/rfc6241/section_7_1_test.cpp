// SPDX-License-Identifier: Apache-2.0
// RFC 6241, sections 7.1 and 8.9.5.1: the attributes of the filter of a retrieval.
#include "support/schema.h"

namespace datatest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

Texts Get(const std::string &filter)
{
    Schema schema;
    schema.Add("ietf-netconf", "extension get-filter-element-attributes;"
                               "rpc get { input { anyxml other; anyxml filter {"
                               " ietf-netconf:get-filter-element-attributes; } } }");
    return schema.CheckMessage("<get xmlns='urn:ietf-netconf'>" + filter + "</get>",
                               ZR_DATA_REQUEST);
}

} // namespace

TEST(Rfc6241, Section7_1TakesTheAttributesOfAFilter)
{
    EXPECT_THAT(Get("<filter type='subtree'><a xmlns='urn:a'/></filter>"), IsEmpty());
    EXPECT_THAT(Get("<filter type='xpath' select='/a'/>"), IsEmpty());
}

TEST(Rfc6241, Section7_1RefusesOtherAttributesAndPlaces)
{
    EXPECT_THAT(
        Get("<filter kind='xpath'/>"),
        ElementsAre("unknown-attribute /ietf-netconf:get/ietf-netconf:filter: attribute \"kind\" "
                    "is not known"));
    EXPECT_THAT(
        Get("<other type='xpath'/>"),
        ElementsAre("unknown-attribute /ietf-netconf:get/ietf-netconf:other: attribute \"type\" "
                    "is not known"));
}

} // namespace datatest
