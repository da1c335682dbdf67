// tidewright-sample-home DIR: builds a sample home.

#include "cli/ExitStatus.h"
#include "cli/Interrupt.h"
#include "cli/Paths.h"
#include "core/support/Text.h"
#include "samples/SampleHome.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace {

using namespace tidewright;

int fail(std::string_view sentence, int status) {
    fmt::print(stderr, "tidewright-sample-home: {}\n", printable(sentence));
    return status;
}

int build(const std::string& folder, double scale) {
    const Interrupt interrupt;
    const SampleHome home{.folder = absolute(folder), .scale = scale};
    const auto built = home.build(interrupt.token());
    if (!built && built.error().kind == SampleHomeError::Kind::cancelled)
        return fail("Stopped. Nothing of the sample home is left.", interruptedStatus);
    if (!built)
        return fail(built.error().sentence, failedStatus);
    return printResult(fmt::format("A sample home of {} is in {}\n", formattedBytes(home.bytes()),
                                   printable(home.folder.path())));
}

} // namespace

int main(int argumentCount, char** arguments) {
    CLI::App app("Builds a developer's home folder with years of clutter in it, to try Tidewright "
                 "out on. The files take room, but hold nothing.",
                 "tidewright-sample-home");
    std::string folder;
    app.add_option("DIR", folder, "The folder to make; it may be there if it is empty")->required();
    double scale = SampleHome::defaultScale;
    app.add_option(
           "--scale", scale,
           fmt::format("How large things are compared with real life: 1 makes a home of {}; "
                       "by default {}, which makes one of {}",
                       formattedBytes(SampleHome{.scale = 1}.bytes()), SampleHome::defaultScale,
                       formattedBytes(SampleHome{}.bytes())))
        ->option_text("N");
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::Success& success) { // --help
        return app.exit(success);
    } catch (const CLI::ParseError& error) {
        return fail(fmt::format("{}. See tidewright-sample-home --help.", error.what()),
                    usageStatus);
    }
    if (!(scale > 0 && scale <= SampleHome::largestScale)) // "nan" is a number as well
        return fail(
            fmt::format("--scale takes a number above 0 and up to {}.", SampleHome::largestScale),
            usageStatus);
    return build(folder, scale);
}
