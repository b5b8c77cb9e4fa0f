// Replays inputs through a fuzz entry without libFuzzer: each argument is a
// file, or a folder whose files are replayed in name order. Used by the
// tests to run the seed corpus in every build; a crash fails the test.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char **argv)
{
    namespace fs = std::filesystem;
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        const fs::path argument(argv[i]);
        if (fs::is_directory(argument)) {
            std::vector<fs::path> files;
            for (const fs::directory_entry &entry : fs::directory_iterator(argument)) {
                if (entry.is_regular_file()) {
                    files.push_back(entry.path());
                }
            }
            std::sort(files.begin(), files.end());
            inputs.insert(inputs.end(), files.begin(), files.end());
        } else {
            inputs.push_back(argument);
        }
    }
    if (inputs.empty()) {
        std::cerr << "usage: " << argv[0] << " FILE|FOLDER...\n";
        return 2;
    }
    for (const fs::path &path : inputs) {
        std::ifstream in(path, std::ios::binary);
        if (!in) {
            std::cerr << "cannot read " << path << "\n";
            return 1;
        }
        const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    }
    std::cout << "replayed " << inputs.size() << " inputs\n";
    return 0;
}
