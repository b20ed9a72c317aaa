#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <span>
#include <string>
#include <sys/resource.h>
#include <vector>

#include "TestPictures.h"
#include "imaging/AttachmentIdentity.h"
#include "platform/SHA256.h"

using namespace quorvantis;

namespace {

/// Processor time of this process and those that it waited for, in milliseconds.
double processorTime() {
    double sum = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage;
        getrusage(who, &usage);
        for (const auto& time : {usage.ru_utime, usage.ru_stime})
            sum += static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    }
    return sum;
}

class Times {
  public:
    void measure(const std::function<void()>& work) {
        const double start = processorTime();
        work();
        times_.push_back(processorTime() - start);
    }
    double median() {
        std::ranges::sort(times_);
        return times_[times_.size() / 2];
    }

  private:
    std::vector<double> times_;
};

std::vector<char> content(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void hash(std::span<const char> bytes) {
    platform::SHA256 hash;
    hash.update(std::as_bytes(bytes));
    static_cast<void>(hash.finish());
}

/// The contestants take turns, so that what else the machine does hits them alike.
void compare(const std::string& path, int rounds) {
    const auto identity = HelperIO::attachmentIdentity(path);
    if (!identity.pixelHash) std::exit(1);
    const std::vector<char> pixels(
        static_cast<std::size_t>(*identity.pixelWidth) * static_cast<std::size_t>(*identity.pixelHeight) * 4,
        1);
    const auto bytes = content(path);
    Times whole, decoding, hashingPixels, hashingFile;
    for (int i = 0; i < rounds; ++i) {
        whole.measure([&] { static_cast<void>(HelperIO::attachmentIdentity(path)); });
        decoding.measure([&] { bench::decode(path); });
        hashingPixels.measure([&] { hash(pixels); });
        hashingFile.measure([&] { hash(bytes); });
    }
    const double sum = decoding.median() + hashingPixels.median() + hashingFile.median();
    std::printf("| %s | %.1f | %.1f | %.1f | %.1f | %.2f |\n", std::filesystem::path(path).filename().c_str(),
                whole.median(), decoding.median(), hashingPixels.median(), hashingFile.median(),
                whole.median() / sum);
    std::fflush(stdout);
}

}  // namespace

/// quorvantis-speed-benchmark ROUNDS PICTURE...: the processor time of the identity of each picture, in
/// milliseconds, beside that of its parts, each alone: the library's decoding, SHA-256 of the pixels and of
/// the file.
int main(int count, char** arguments) {
    if (count < 3) return 2;
    std::puts(
        "| Picture | identity | decoding | pixels' SHA-256 | file's SHA-256 | identity / sum |\n"
        "|---|---|---|---|---|---|");
    for (int i = 2; i < count; ++i) compare(arguments[i], std::atoi(arguments[1]));
}
