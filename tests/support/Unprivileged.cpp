#include "tests/support/Unprivileged.h"

#include "tests/support/ForkedAnswer.h"

#include <gtest/gtest.h>

#include <grp.h>
#include <unistd.h>

namespace tidewright::test {

namespace {

constexpr unsigned nobody = 65534;

bool dropRights() {
    if (geteuid() != 0)
        return true;
    return setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0;
}

} // namespace

std::string asOrdinaryUser(const std::function<std::string()>& check) {
    const std::optional<std::string> answer = forkedAnswer(dropRights, check);
    EXPECT_TRUE(answer) << "the child could not drop its rights";
    return answer.value_or("");
}

} // namespace tidewright::test
