// SPDX-License-Identifier: Apache-2.0
// libzrdata against the slow checker, on generated schemas and documents.
#include <algorithm>

#include "reference/checker.h"
#include "support/schema.h"

namespace datatest {

using namespace reference;

namespace {

constexpr uint32_t kSchemas = 500;
constexpr uint32_t kDocuments = 20; // of each

Texts Sorted(Texts texts)
{
    std::sort(texts.begin(), texts.end());
    return texts;
}

// "TAG[APP-TAG] PATH" of each, without the message.
Texts WithoutMessages(Texts errors)
{
    for (std::string &error : errors)
        error.resize(error.find(": "));
    return errors;
}

} // namespace

TEST(GeneratedDocuments, HaveTheFaultsThatASlowCheckerFinds)
{
    uint32_t faulty = 0;
    for (uint32_t seed = 0; seed < kSchemas && !HasFailure(); ++seed) {
        Chance chance(seed);
        std::unique_ptr<Node> model = MakeSchema(chance);
        Schema schema(YangOf(*model));
        for (uint32_t i = 0; i < kDocuments && !HasFailure(); ++i) {
            Element document = MakeDocument(*model, chance, i % 4);
            Texts expected = Sorted(FaultsOf(*model, document));
            faulty += expected.empty() ? 0 : 1;
            EXPECT_EQ(Sorted(WithoutMessages(schema.Check(XmlOf(document)))), expected)
                << "seed " << seed << "\n"
                << YangOf(*model) << XmlOf(document);
        }
    }
    EXPECT_GT(faulty, kSchemas * kDocuments / 3);
    EXPECT_LT(faulty, kSchemas * kDocuments * 9 / 10);
}

} // namespace datatest
