// SPDX-License-Identifier: Apache-2.0
// Which steps of expressions an index answers.
#include "instance/plan/lookup.h"

#include <gtest/gtest.h>

namespace datatest {

namespace {

std::string Rewrite(const std::string &expression)
{
    std::pmr::string out;
    zr::data::AppendWithLookups(expression, std::pmr::get_default_resource(), out);
    return std::string(out);
}

} // namespace

TEST(Lookup, TakesThePlaceOfAStepWithAKey)
{
    EXPECT_EQ(Rewrite("/m:a/m:l[m:k = current()/../m:x]/m:v = 'on'"),
              "zr-entries(/m:a,'m:l','m:k',current()/../m:x)/m:v = 'on'");
    EXPECT_EQ(Rewrite("../../m:l[current()/m:x=m:k]"),
              "zr-entries(../..,'m:l','m:k',current()/m:x)");
    EXPECT_EQ(Rewrite("/m:l[m:k='x']"), "zr-entries(/,'m:l','m:k','x')");
    EXPECT_EQ(Rewrite("count(m:l[m:k = /m:a/m:b]) = 1"),
              "count(zr-entries(.,'m:l','m:k',/m:a/m:b)) = 1");
    EXPECT_EQ(Rewrite("current()/../m:l[m:k=current()]"),
              "zr-entries(current()/..,'m:l','m:k',current())");
}

TEST(Lookup, TakesAllKeysOfAStep)
{
    EXPECT_EQ(Rewrite("/m:a/m:l[m:k = '1'][m:j = current()/m:x]/m:v"),
              "zr-entries(/m:a,'m:l','m:k','1','m:j',current()/m:x)/m:v");
    EXPECT_EQ(Rewrite("/m:l[m:k = '1' and m:j = '2']"), "zr-entries(/,'m:l','m:k','1','m:j','2')");
    EXPECT_EQ(Rewrite("/m:l[m:k = '1'][m:v > 2]/m:w"), "zr-entries(/,'m:l','m:k','1')[m:v > 2]/m:w")
        << "what is no key stays a predicate";
}

TEST(Lookup, LeavesOtherStepsAsTheyAre)
{
    for (const char *expression : {"/m:l[1]",
                                   "/m:l[m:k]",
                                   "/m:l[m:k = 1]",
                                   "/m:l[m:k = ../m:x]",
                                   "/m:l[m:k != 'x']",
                                   "//m:l[m:k = 'x']",
                                   "/m:a//m:l[m:k = 'x']",
                                   "m:a[1]/m:l[m:k = 'x']",
                                   "*[m:k = 'x']",
                                   "m:*[m:k = 'x']",
                                   "child::m:l[m:k = 'x']",
                                   "@a[. = 'x']",
                                   "/m:l[m:k = 'x' or m:j = 'y']",
                                   "/m:l[m:k = concat('x', 'y')]",
                                   "/m:l[m:k = 'x' + 1]",
                                   "/m:l[m:k = current()//m:x]",
                                   "deref(.)/../m:l[m:k = 'x']",
                                   "/m:l[m:k/m:j = 'x']",
                                   "/m:l[",
                                   "[",
                                   ""})
        EXPECT_EQ(Rewrite(expression), expression);
}

TEST(Lookup, FindsEveryPathOfAnExpression)
{
    EXPECT_EQ(Rewrite("m:l[m:k='1'] or not(../m:j[m:i = '2']/m:l[m:k='3'])"),
              "zr-entries(.,'m:l','m:k','1') or not(zr-entries(..,'m:j','m:i','2')/m:l[m:k='3'])");
}

} // namespace datatest
