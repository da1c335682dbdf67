#include "core/support/DateText.h"

#include <gtest/gtest.h>
#include <unicode/locid.h>

namespace tidewright {
namespace {

/// Another language of the user's, for a scope.
class DateTextTest : public testing::Test {
protected:
    static void use(const char* name) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale(name), status);
    }
    void TearDown() override { use(m_before.getName()); }

    icu::Locale m_before = icu::Locale::getDefault();
    Date m_date = Date() + std::chrono::hours(24 * 365 * 40) + std::chrono::minutes(14 * 60 + 30);
};

TEST_F(DateTextTest, SpeaksTheUsersLanguage) {
    use("en_GB");
    EXPECT_EQ(dateAndTimeText(m_date, "UTC"), "22 Dec 2009, 14:30");
    use("de_DE");
    EXPECT_EQ(dateAndTimeText(m_date, "UTC"), "22. Dez. 2009, 14:30");
}

TEST_F(DateTextTest, IsOfTheUsersZone) {
    use("en_GB");
    EXPECT_EQ(dateAndTimeText(m_date, "Asia/Tokyo"), "22 Dec 2009, 23:30");
    EXPECT_EQ(dateAndTimeText(m_date + std::chrono::hours(10), "UTC"), "23 Dec 2009, 00:30");
}

TEST_F(DateTextTest, DaysHaveShortTexts) {
    using namespace std::chrono;
    const std::vector<sys_days> days{2026y / 3 / 5, 1969y / 12 / 31};
    const auto expectTexts = [&](DayForm form, const std::vector<std::string>& texts) {
        EXPECT_EQ(dayTexts(days, form), texts);
    };
    use("en_GB");
    expectTexts(DayForm::dayAndMonth, {"5 Mar", "31 Dec"});
    expectTexts(DayForm::monthAndYear, {"Mar 2026", "Dec 1969"});
    expectTexts(DayForm::year, {"2026", "1969"});
    use("de_DE");
    expectTexts(DayForm::dayAndMonth, {"5. März", "31. Dez."});
}

} // namespace
} // namespace tidewright
