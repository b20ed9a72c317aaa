#pragma once

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "harness/TemporaryFolder.h"
#include "platform/Descriptors.h"
#include "platform/Spawn.h"

namespace quorvantis::bench {

using Clock = std::chrono::steady_clock;

/// Microseconds since then.
double since(Clock::time_point start);

double median(std::vector<double> values);

/// An application-support folder with one registered agent, and a broker that answers a search for a number
/// of bytes with about as many: entries of 500 bytes, with non-ASCII letters and escapes.
class Place {
  public:
    Place();
    Place(const Place&) = delete;
    ~Place();

    const harness::TemporaryFolder folder;

  private:
    void serve() const;

    platform::Descriptor listener_;
    std::thread broker_;
};

/// A program at work that is started as the server is.
class Session {
  public:
    /// Returns after the answer to "initialize".
    Session(const std::string& program, const Place& place);

    void ping() { request(R"("method":"ping")"); }
    void listTools() { request(R"("method":"tools/list")"); }
    /// Searches the history for a reply of about so many bytes.
    void search(std::size_t size);
    /// Ends its input and waits until it is gone.
    void end();

    /// A value of /proc/PID/FILE in KiB, such as "VmHWM" of "status".
    double memory(const std::string& file, const std::string& name) const;

  private:
    void request(const std::string& members);

    platform::Descriptor input_, output_;
    platform::Child child_;
};

}  // namespace quorvantis::bench
