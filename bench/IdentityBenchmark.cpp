#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdlib.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

#include "TestPictures.h"
#include "imaging/AttachmentIdentity.h"
#include "platform/Process.h"

using namespace quorvantis;

namespace {

/// The times of several runs, in milliseconds.
class Times {
  public:
    void measure(const std::function<void()>& work) {
        const auto start = std::chrono::steady_clock::now();
        work();
        times_.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        std::sort(times_.begin(), times_.end());
    }
    double best() const { return times_.front(); }
    double median() const { return times_[times_.size() / 2]; }

  private:
    std::vector<double> times_;
};

void print(const char* what, const Times& times, const Times& base) {
    std::printf("  %-22s median %8.2f ms, best %8.2f ms  | %.2f x, %+.2f ms | best %.2f x, %+.2f ms\n", what,
                times.median(), times.best(), times.median() / base.median(), times.median() - base.median(),
                times.best() / base.best(), times.best() - base.best());
}

void identify(const std::string& path) {
    if (!HelperIO::attachmentIdentity(path).pixelHash) std::exit(1);
}

double peak(int who) {
    rusage usage;
    getrusage(who, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// Runs this program once more for one identity, so that nothing else counts for its memory.
void printMemory(const std::string& path) {
    std::fflush(stdout);
    const std::string command = "'" + *platform::executablePath(getpid()) + "' --memory '" + path + "'";
    if (std::system(command.c_str()) != 0) std::exit(1);
}

/// The contestants take turns, so that what else the machine does hits them alike.
void compare(const std::string& name, const std::string& path, int runs, void (*decode)(const std::string&)) {
    Times bare, sum, identity;
    const std::string command = "sha256sum '" + path + "' >/dev/null";
    for (int i = 0; i < runs; ++i) {
        bare.measure([&] { decode(path); });
        sum.measure([&] {
            if (std::system(command.c_str()) != 0) std::exit(1);
        });
        identity.measure([&] { identify(path); });
    }
    std::printf("%s, %.1f MB\n", name.c_str(), static_cast<double>(std::filesystem::file_size(path)) / 1e6);
    print("library alone", bare, bare);
    print("sha256sum alone", sum, bare);
    print("identity", identity, bare);
    printMemory(path);
}

void compareFifty(const std::string& path) {
    const std::vector<std::string> paths(50, path);
    Times apart, together;
    for (int i = 0; i < 21; ++i) {
        apart.measure([&] {
            for (const auto& one : paths) identify(one);
        });
        together.measure([&] { HelperIO::attachmentIdentities(paths); });
    }
    std::printf("fifty PNG of 64 x 64\n");
    print("fifty calls of one", apart, apart);
    print("one call of fifty", together, apart);
}

}  // namespace

int main(int count, char** arguments) {
    if (count == 3 && std::string_view(arguments[1]) == "--memory") {
        identify(arguments[2]);
        std::printf("  peak memory            caller %.1f MiB, decoder %.1f MiB\n", peak(RUSAGE_SELF),
                    peak(RUSAGE_CHILDREN));
        return 0;
    }
    std::string folder = "/tmp/quorvantis-benchmark-XXXXXX";
    if (!mkdtemp(folder.data())) return 1;
    for (const auto& [size, width, height, runs] :
         {std::tuple("6000 x 4000", 6000, 4000, 15), std::tuple("1440 x 900", 1440, 900, 51)}) {
        const std::string jpeg = folder + "/picture.jpg";
        const std::string png = folder + "/picture.png";
        bench::writeJPEG(jpeg, width, height);
        bench::writePNG(png, width, height);
        compare(std::string(size) + " JPEG", jpeg, runs, bench::decodeJPEG);
        compare(std::string(size) + " PNG", png, runs, bench::decodePNG);
    }
    bench::writePNG(folder + "/small.png", 64, 64);
    compareFifty(folder + "/small.png");
    std::filesystem::remove_all(folder);
}
