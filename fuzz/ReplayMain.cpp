// Runs a fuzz target over the files of corpus folders without libFuzzer, as
// the test suite does, so that inputs which once broke a rule keep passing.
//
//     replay_TARGET FOLDER...
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FOLDER...\n", argv[0]);
        return 2;
    }
    size_t inputs = 0;
    for (int i = 1; i < argc; ++i) {
        std::error_code error;
        std::vector<std::filesystem::path> files;
        for (const auto& entry : std::filesystem::directory_iterator(argv[i], error))
            if (entry.is_regular_file()) files.push_back(entry.path());
        if (error) {
            std::fprintf(stderr, "%s: %s\n", argv[i], error.message().c_str());
            return 2;
        }
        std::sort(files.begin(), files.end());
        for (const auto& file : files) {
            std::ifstream in(file, std::ios::binary);
            std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            // Named first: a broken rule ends the program.
            std::printf("%s\n", file.filename().c_str());
            std::fflush(stdout);
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++inputs;
        }
    }
    std::printf("%zu inputs passed\n", inputs);
    return inputs > 0 ? 0 : 1;
}
