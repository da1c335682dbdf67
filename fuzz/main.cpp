// Stands in for the fuzzer where there is none: gives a target its corpus, and so many inputs made
// from it by chance, the same in each run. Arguments: the folder of the corpus, and that number.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::mt19937 random_(20); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in each run on purpose

std::size_t below(std::size_t limit) { return random_() % limit; }

void run(const std::string& input) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

/// The files of the folder in the order of their names.
std::vector<std::string> corpusIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        paths.push_back(entry.path());
    std::ranges::sort(paths);
    std::vector<std::string> inputs;
    for (const auto& path : paths) {
        std::ifstream stream(path, std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(stream),
                            std::istreambuf_iterator<char>());
    }
    return inputs;
}

/// A piece of an input.
std::string pieceOf(const std::string& input) {
    const std::size_t start = below(input.size() + 1);
    return input.substr(start, below(input.size() - start + 1));
}

void change(std::string& input, const std::vector<std::string>& corpus) {
    const std::size_t at = below(input.size() + 1);
    switch (below(5)) {
    case 0:
        input.erase(at, below(8));
        break;
    case 1:
        input.insert(at, pieceOf(corpus[below(corpus.size())]));
        break;
    case 2:
        input.insert(at, 1, "/./.~^"[below(6)]);
        break;
    case 3:
        if (at < input.size())
            input[at] = static_cast<char>(below(256));
        break;
    default:
        input = input.substr(0, at) + corpus[below(corpus.size())];
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3)
        return EXIT_FAILURE;
    const std::vector<std::string> corpus = corpusIn(arguments[1]);
    if (corpus.empty()) {
        std::fprintf(stderr, "%s holds no corpus\n", arguments[1]);
        return EXIT_FAILURE;
    }
    for (const std::string& input : corpus)
        run(input);
    for (long i = std::strtol(arguments[2], nullptr, 10); i > 0; --i) {
        std::string input = corpus[below(corpus.size())];
        for (std::size_t changes = 1 + below(4); changes > 0; --changes)
            change(input, corpus);
        run(input);
    }
    return EXIT_SUCCESS;
}
