#include "platform/ClientSessionNotification.h"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <string_view>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include "platform/linux/ClientSessionSignal.h"

namespace quorvantis::platform {

namespace {

using Clock = std::chrono::steady_clock;

/// Whether all of the addresses (D-Bus specification, "Server Addresses") are local sockets. Other kinds are
/// not used: resolving a host or starting a program can take any time, regardless of the deadline.
bool areLocal(std::string_view addresses) {
    for (;;) {
        if (!addresses.starts_with("unix:")) return false;
        const auto end = addresses.find(';');
        if (end == addresses.npos) return true;
        addresses.remove_prefix(end + 1);
    }
}

bool hasSessionBus() {
    if (const char* addresses = std::getenv("DBUS_SESSION_BUS_ADDRESS")) return areLocal(addresses);
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    return folder && access((std::string(folder) + "/bus").c_str(), F_OK) == 0;
}

/// The functions of libsystemd that are used here. The library is loaded only if there is a bus, because
/// loading takes longer than the rest of the start-up.
struct BusLibrary {
    decltype(&sd_bus_open_user) openUser = nullptr;
    decltype(&sd_bus_emit_signal) emitSignal = nullptr;
    decltype(&sd_bus_process) process = nullptr;
    decltype(&sd_bus_wait) wait = nullptr;
    decltype(&sd_bus_is_ready) isReady = nullptr;
    decltype(&sd_bus_get_n_queued_write) queuedWrites = nullptr;
    decltype(&sd_bus_close) closeBus = nullptr;
    decltype(&sd_bus_unref) unref = nullptr;
    bool complete = false;

    BusLibrary() {
        void* library = dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL);
        complete = library && find(library, "sd_bus_open_user", openUser) &&
                   find(library, "sd_bus_emit_signal", emitSignal) &&
                   find(library, "sd_bus_process", process) && find(library, "sd_bus_wait", wait) &&
                   find(library, "sd_bus_is_ready", isReady) &&
                   find(library, "sd_bus_get_n_queued_write", queuedWrites) &&
                   find(library, "sd_bus_close", closeBus) && find(library, "sd_bus_unref", unref);
    }

    template <class Function>
    static bool find(void* library, const char* name, Function& function) {
        function = reinterpret_cast<Function>(dlsym(library, name));
        return function != nullptr;
    }
};

// sd_bus_flush would block without a timeout on a bus that accepts the connection but never replies.
void sendQueued(const BusLibrary& library, sd_bus* bus, Clock::time_point deadline) {
    for (;;) {
        const int handled = library.process(bus, nullptr);
        if (handled < 0) return;
        std::uint64_t queued = 0;
        if (library.queuedWrites(bus, &queued) < 0) return;
        if (queued == 0 && library.isReady(bus) > 0) return;
        if (handled > 0) continue;
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - Clock::now());
        if (left.count() <= 0 || library.wait(bus, static_cast<std::uint64_t>(left.count())) < 0) return;
    }
}

}  // namespace

void postClientSessionChanged(const std::string& agent) {
    if (!hasSessionBus()) return;
    static const BusLibrary library;
    if (!library.complete) return;
    const auto deadline = Clock::now() + std::chrono::milliseconds(100);
    sd_bus* bus = nullptr;
    if (library.openUser(&bus) < 0) return;
    if (library.emitSignal(bus, clientSessionPath, clientSessionInterface, clientSessionChanged, "s",
                           agent.c_str()) >= 0)
        sendQueued(library, bus, deadline);
    library.closeBus(bus);
    library.unref(bus);
}

}  // namespace quorvantis::platform
