// Writes what the build makes of the grammar of the command line: the shells' completions and the
// manual page, each where it stands below a folder like /usr/share.

#include "cli/Completions.h"
#include "cli/ManPage.h"

#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace {

bool write(const std::filesystem::path& file, const std::string& text) {
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream)
        fmt::print(stderr, "{} could not be written.\n", file.string());
    return static_cast<bool>(stream);
}

} // namespace

int main(int argumentCount, char** arguments) {
    using namespace tidewright;
    if (argumentCount != 2) {
        fmt::print(stderr, "Name the folder to write to.\n");
        return 2;
    }
    const std::filesystem::path share = arguments[1];
    const CommandDescription program = Grammar().description();
    const bool written =
        write(share / "bash-completion/completions/tidewright", bashCompletion(program)) &&
        write(share / "zsh/site-functions/_tidewright", zshCompletion(program)) &&
        write(share / "fish/vendor_completions.d/tidewright.fish", fishCompletion(program)) &&
        write(share / "man/man1/tidewright.1", manPage(program, TIDEWRIGHT_VERSION));
    return written ? 0 : 1;
}
