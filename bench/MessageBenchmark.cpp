#include <cstdio>
#include <functional>
#include <sched.h>
#include <string>
#include <sys/resource.h>
#include <vector>

#include "Sessions.h"

using namespace quorvantis::bench;

namespace {

constexpr int rounds = 5;

/// What is measured of a program: one value a round, or many.
using Measure = std::function<std::vector<double>(const std::string& program, const Place&)>;

struct Row {
    const char* what;
    Measure measure;
};

/// Processor time, in microseconds, of the children that were waited for.
double childrensTime() {
    rusage usage;
    getrusage(RUSAGE_CHILDREN, &usage);
    double sum = 0;
    for (const auto& time : {usage.ru_utime, usage.ru_stime})
        sum += static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_usec);
    return sum;
}

Measure repeated(int count, std::function<double(const std::string&, const Place&)> one) {
    return [=](const std::string& program, const Place& place) {
        std::vector<double> values;
        for (int i = 0; i < count; ++i) values.push_back(one(program, place));
        return values;
    };
}

double start(const std::string& program, const Place& place) {
    const auto began = Clock::now();
    Session session(program, place);
    const double taken = since(began);
    session.end();
    return taken;
}

double startTime(const std::string& program, const Place& place) {
    const double before = childrensTime();
    Session(program, place).end();
    return childrensTime() - before;
}

double end(const std::string& program, const Place& place) {
    Session session(program, place);
    const auto began = Clock::now();
    session.end();
    return since(began);
}

/// The times of the requests of one session, but for the first tenth.
Measure requests(int count, std::function<void(Session&)> request) {
    return [=](const std::string& program, const Place& place) {
        Session session(program, place);
        std::vector<double> times;
        for (int i = -count / 10; i < count; ++i) {
            const auto began = Clock::now();
            request(session);
            if (i >= 0) times.push_back(since(began));
        }
        session.end();
        return times;
    };
}

double memoryAfter(const std::string& program, const Place& place, int searches) {
    Session session(program, place);
    for (int i = 0; i < searches; ++i) session.search(1'000'000);
    const double peak = session.memory("status", "VmHWM");
    session.end();
    return peak;
}

const std::vector<Row> rows = {
    {"start to the first answer, µs", repeated(20, start)},
    {"processor time of a session without calls, µs", repeated(20, startTime)},
    {"end of input to the end, µs", repeated(20, end)},
    {"ping, µs", requests(2000, [](Session& session) { session.ping(); })},
    {"tools/list, µs", requests(500, [](Session& session) { session.listTools(); })},
    {"search, reply of 1 kB, µs", requests(300, [](Session& session) { session.search(1'000); })},
    {"search, reply of 60 kB, µs", requests(60, [](Session& session) { session.search(60'000); })},
    {"search, reply of 1 MB, µs", requests(15, [](Session& session) { session.search(1'000'000); })},
    {"peak memory after the start, KiB",
     repeated(1, [](auto& program, auto& place) { return memoryAfter(program, place, 0); })},
    {"peak memory after ten replies of 1 MB, KiB",
     repeated(1, [](auto& program, auto& place) { return memoryAfter(program, place, 10); })},
};

}  // namespace

/// quorvantis-message-benchmark FLOOR PROGRAM...: medians of what messages cost, for each program and in
/// proportion to the first. The programs take turns, so that what else the machine does hits them alike, and
/// have one processor together with their client and broker: waking another takes longer than an answer.
int main(int count, char** arguments) {
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(sched_getcpu(), &one);
    sched_setaffinity(0, sizeof one, &one);
    const Place place;
    const std::vector<std::string> programs(arguments + 1, arguments + count);
    std::printf("| |");
    for (const auto& program : programs) std::printf(" %s |", program.substr(program.rfind('/') + 1).c_str());
    std::printf("\n|---|");
    for (std::size_t i = 0; i < programs.size(); ++i) std::printf("---|");
    std::printf("\n");
    for (const auto& [what, measure] : rows) {
        std::vector<std::vector<double>> values(programs.size());
        for (int round = 0; round < rounds; ++round)
            for (std::size_t i = 0; i < programs.size(); ++i) {
                const auto more = measure(programs[i], place);
                values[i].insert(values[i].end(), more.begin(), more.end());
            }
        std::printf("| %s |", what);
        for (const auto& program : values)
            std::printf(" %.0f (%.2f) |", median(program), median(program) / median(values.front()));
        std::printf("\n");
        std::fflush(stdout);
    }
}
