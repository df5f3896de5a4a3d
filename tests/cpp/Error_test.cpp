#include <gtest/gtest.h>

#include "FailureText.hpp"

#include <boost/any.hpp>

#include "MWrapper.hpp"
#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/TypeCheckedCast.hpp"

namespace zep {

namespace {
struct Probe {
    void Member() const { ZEP_FAIL("boom"); }
    Probe& operator++() { ZEP_FAIL("step"); }
};
template <class T>
struct Holder {
    static void Twice() { ZEP_FAIL("nested"); }
};
}  // namespace

TEST(Error, FormatsMessageFunctionFileBaseAndLine) {
    const Error e("/a/b\\c/Date.cpp", 33, "zep::Date::Date", " Date (5) outside of range.");
    EXPECT_STREQ(e.what(), " Date (5) outside of range. (zep::Date::Date: Date.cpp, l.33)");
    EXPECT_EQ(e.Message(), " Date (5) outside of range.");
}

TEST(Error, LeavesOutAnUnknownFunction) {
    const Error e("x/Calendar.cpp", 7, "(unknown)", "oops");
    EXPECT_STREQ(e.what(), "oops (Calendar.cpp, l.7)");
}

TEST(Error, CopiesShareTheirText) {
    const Error e("f.cpp", 1, "g", "m");
    const Error copy = e;
    EXPECT_EQ(copy.what(), e.what());
}

TEST(Error, MacroNamesTheQualifiedFunction) {
    EXPECT_NE(zep::testing::ErrorWhat([] { Probe{}.Member(); }).find("(zep::Probe::Member: Error_test.cpp, l."),
              std::string::npos);
    EXPECT_NE(zep::testing::ErrorWhat([] { Probe p; ++p; }).find("(zep::Probe::operator ++: "),
              std::string::npos);
    EXPECT_NE(zep::testing::ErrorWhat([] { Holder<int>::Twice(); }).find("(zep::Holder<T>::Twice: "),
              std::string::npos);
}

// The signatures as clang++ spells them name the same functions as g++'s do.
TEST(Error, NamesFunctionsFromClangSignatures) {
    EXPECT_EQ(detail::QualifiedFunctionName("void zep::(anonymous namespace)::Probe::Member() const"),
              "zep::Probe::Member");
    EXPECT_EQ(detail::QualifiedFunctionName(
                  "zep::(anonymous namespace)::Probe &zep::(anonymous namespace)::Probe::operator++()"),
              "zep::Probe::operator ++");
    EXPECT_EQ(detail::QualifiedFunctionName("const char *zep::Date::Name(int) const"), "zep::Date::Name");
}

TEST(TypeCheckedCast, NamesOperationAndExpectedType) {
    const boost::any held = 3.5;
    EXPECT_DOUBLE_EQ(TypeCheckedCast<double>(held, "Op"), 3.5);
    try {
        TypeCheckedCast<int>(held, "MThing::Get");
        FAIL();
    } catch (const std::runtime_error& e) {
        EXPECT_EQ(std::string(e.what()).rfind(
                      "Type check failed in MThing::Get: Cannot determine object type (expected: int). ", 0),
                  0u)
            << e.what();
    }
}

TEST(Guarded, PrefixesEveryFailureForm) {
    const auto message = [](auto&& action) {
        try {
            python::Guarded("MThing::Price", action);
        } catch (const std::runtime_error& e) {
            return std::string(e.what());
        }
        return std::string();
    };
    EXPECT_EQ(message([] { throw "bare"; }), "MThing::Price failed: bare");
    EXPECT_EQ(message([] { throw std::out_of_range("range"); }), "MThing::Price failed: range");
    EXPECT_EQ(message([] { throw Error("a/F.cpp", 2, "zep::F", "lib"); }),
              "MThing::Price failed: lib (zep::F: F.cpp, l.2)");
}

}  // namespace zep
