// Runs a fuzz target over every file of the given folders, without a fuzzing engine.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> filesUnder(const std::filesystem::path& place) {
    if (std::filesystem::is_regular_file(place)) {
        return {place};
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(place)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool replay(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
    if (in.bad() || !in.is_open()) {
        std::cerr << "cannot read " << file << '\n';
        return false;
    }
    // Flushed before the run: after a crash the last line names the input.
    std::cout << file.filename().string() << std::endl;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

int replayAll(int count, char** places) {
    std::size_t done = 0;
    for (int i = 0; i < count; ++i) {
        for (const auto& file : filesUnder(places[i])) {
            if (!replay(file)) {
                return 1;
            }
            ++done;
        }
    }
    std::cout << done << " inputs replayed\n";
    return done == 0 ? 1 : 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return replayAll(argc - 1, argv + 1);
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
