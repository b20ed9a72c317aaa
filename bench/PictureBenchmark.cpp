#include <algorithm>
#include <array>
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
#include "harness/TemporaryFolder.h"
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

bool hasVips() {
    return std::system("command -v vips >/dev/null") == 0;
}

void decodeByVips(const std::string& path) {
    if (std::system(("vips avg '" + path + "' >/dev/null").c_str()) != 0) std::exit(1);
}

std::string cell(Times& times) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), " %.1f |", times.median());
    return text.data();
}

/// The contestants take turns, so that what else the machine does hits them alike.
void compare(const std::string& path, int rounds) {
    const auto identity = HelperIO::attachmentIdentity(path);
    if (!identity.pixelHash) std::exit(1);
    const std::vector<char> pixels(
        static_cast<std::size_t>(*identity.pixelWidth) * static_cast<std::size_t>(*identity.pixelHeight) * 4,
        1);
    const auto bytes = content(path);
    const bool isVipsThere = hasVips();
    Times whole, decoding, hashingPixels, hashingFile, vips;
    for (int i = 0; i < rounds; ++i) {
        whole.measure([&] { HelperIO::attachmentIdentity(path); });
        decoding.measure([&] { bench::decode(path); });
        hashingPixels.measure([&] { hash(pixels); });
        hashingFile.measure([&] { hash(bytes); });
        if (isVipsThere) vips.measure([&] { decodeByVips(path); });
    }
    const double sum = decoding.median() + hashingPixels.median() + hashingFile.median();
    std::printf("| %s |%s%s%s%s %.2f |%s\n", std::filesystem::path(path).filename().c_str(),
                cell(whole).c_str(), cell(decoding).c_str(), cell(hashingPixels).c_str(),
                cell(hashingFile).c_str(), whole.median() / sum, isVipsThere ? cell(vips).c_str() : " - |");
    std::fflush(stdout);
}

}  // namespace

/// quorvantis-picture-benchmark [PICTURE...]: the processor time of the identity of each picture, in
/// milliseconds, beside that of its parts, each alone: the library's decoding, SHA-256 of the pixels and of
/// the file; and of libvips, where it is installed, which decodes the picture and sums up its pixels. Without
/// pictures it makes some.
int main(int count, char** arguments) {
    constexpr int rounds = 5;
    std::vector<std::string> pictures(arguments + 1, arguments + count);
    const harness::TemporaryFolder folder;
    if (pictures.empty()) {
        pictures = {folder / "24-megapixels.jpg", folder / "8-megapixels.png", folder / "200x200.png"};
        bench::writeJPEG(pictures[0], 6000, 4000);
        bench::writePNG(pictures[1], 3840, 2160);
        bench::writePNG(pictures[2], 200, 200);
    }
    std::puts(
        "| Picture | identity | decoding | pixels' SHA-256 | file's SHA-256 | identity / sum | libvips |\n"
        "|---|---|---|---|---|---|---|");
    for (const auto& picture : pictures) compare(picture, rounds);
}
