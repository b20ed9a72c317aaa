#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Chart.h"
#include "Sessions.h"
#include "TestPictures.h"
#include "imaging/AttachmentIdentity.h"

using namespace quorvantis;
using namespace quorvantis::bench;

namespace {

/// Measures some times, and takes the median.
double repeated(int count, const std::function<double()>& measure) {
    std::vector<double> values;
    for (int i = 0; i < count; ++i) values.push_back(measure());
    return median(values);
}

std::vector<Chart> replies(const std::string& server) {
    Chart time{"Search, ms", "size of the broker's reply, kB", {}},
        memory{"Server's peak memory, MiB", time.across, {}};
    const Place place;
    for (std::size_t size = 1'000; size <= 1'024'000; size *= 2) {
        Session session(server, place);
        const double across = static_cast<double>(size) / 1e3;
        time.points.push_back({across, repeated(20, [&] {
                                   const auto began = Clock::now();
                                   session.search(size);
                                   return since(began) / 1e3;
                               })});
        memory.points.push_back({across, session.memory("status", "VmHWM") / 1024});
        session.end();
    }
    return {time, memory};
}

Chart pictures() {
    Chart chart{"Identity of a JPEG, ms", "megapixels", {}};
    const harness::TemporaryFolder folder;
    for (const int megapixels : {1, 10, 20, 30, 40, 50, 60}) {
        writeJPEG(folder / "picture.jpg", 10'000, megapixels * 100);
        chart.points.push_back({static_cast<double>(megapixels), repeated(3, [&] {
                                    const auto began = Clock::now();
                                    HelperIO::attachmentIdentity(folder / "picture.jpg");
                                    return since(began) / 1e3;
                                })});
    }
    return chart;
}

Chart attachments() {
    Chart chart{"Identities of PNG pictures of 400 x 300, ms", "pictures in one call", {}};
    const harness::TemporaryFolder folder;
    writePNG(folder / "picture.png", 400, 300);
    for (const std::size_t count : {1u, 10u, 20u, 30u, 40u, 50u}) {
        const std::vector<std::string> paths(count, folder / "picture.png");
        chart.points.push_back({static_cast<double>(count), repeated(5, [&] {
                                    const auto began = Clock::now();
                                    HelperIO::attachmentIdentities(paths);
                                    return since(began) / 1e3;
                                })});
    }
    return chart;
}

Chart sessions(const std::string& server) {
    Chart chart{"Memory of a session, its share of common pages, KiB", "sessions at once", {}};
    const Place place;
    std::vector<std::unique_ptr<Session>> sessions;
    for (const std::size_t count : {1u, 2u, 5u, 10u, 20u, 50u, 100u}) {
        while (sessions.size() < count) sessions.push_back(std::make_unique<Session>(server, place));
        double sum = 0;
        for (const auto& session : sessions) sum += session->memory("smaps_rollup", "Pss");
        chart.points.push_back({static_cast<double>(count), sum / static_cast<double>(count)});
    }
    for (const auto& session : sessions) session->end();
    return chart;
}

}  // namespace

/// quorvantis-growth-benchmark SERVER: prints an SVG picture of how time and memory grow with the work.
int main(int count, char** arguments) {
    if (count != 2) return 2;
    auto charts = replies(arguments[1]);
    charts.insert(charts.end(), {pictures(), attachments(), sessions(arguments[1])});
    std::fputs(drawn(charts).c_str(), stdout);
}
