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
#include "platform/Executables.h"

using namespace quorvantis;

namespace {

/// The median of several runs, in milliseconds.
double milliseconds(int runs, const std::function<void()>& work) {
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        times.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
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

void compare(const char* name, const std::string& path, int runs, void (*decode)(const std::string&)) {
    const double bare = milliseconds(runs, [&] { decode(path); });
    const double sum =
        milliseconds(runs, [&] { std::system(("sha256sum '" + path + "' >/dev/null").c_str()); });
    const double identity = milliseconds(runs, [&] { identify(path); });
    std::printf(
        "%-22s %6.1f MB | bare decode %7.2f ms | sha256sum %7.2f ms | identity %7.2f ms = %.2f x, +%.2f ms |",
        name, static_cast<double>(std::filesystem::file_size(path)) / 1e6, bare, sum, identity,
        identity / bare, identity - bare);
    printMemory(path);
}

void compareFifty(const std::string& path) {
    const std::vector<std::string> paths(50, path);
    const double apart = milliseconds(9, [&] {
        for (const auto& one : paths) identify(one);
    });
    const double together = milliseconds(9, [&] { HelperIO::attachmentIdentities(paths); });
    std::printf("fifty of 64 x 64       fifty calls %7.2f ms | one call %7.2f ms = %.0f %%\n", apart,
                together, 100 * together / apart);
}

}  // namespace

int main(int count, char** arguments) {
    if (count == 3 && std::string_view(arguments[1]) == "--memory") {
        identify(arguments[2]);
        std::printf(" peak: caller %.1f MiB, decoder %.1f MiB\n", peak(RUSAGE_SELF), peak(RUSAGE_CHILDREN));
        return 0;
    }
    std::string folder = "/tmp/quorvantis-benchmark-XXXXXX";
    if (!mkdtemp(folder.data())) return 1;
    for (const auto& [size, width, height, runs] :
         {std::tuple("6000 x 4000", 6000, 4000, 9), std::tuple("1440 x 900", 1440, 900, 51)}) {
        const std::string jpeg = folder + "/picture.jpg";
        const std::string png = folder + "/picture.png";
        bench::writeJPEG(jpeg, width, height);
        bench::writePNG(png, width, height);
        compare((std::string(size) + " JPEG").c_str(), jpeg, runs, bench::decodeJPEG);
        compare((std::string(size) + " PNG").c_str(), png, runs, bench::decodePNG);
    }
    bench::writePNG(folder + "/small.png", 64, 64);
    compareFifty(folder + "/small.png");
    std::filesystem::remove_all(folder);
}
