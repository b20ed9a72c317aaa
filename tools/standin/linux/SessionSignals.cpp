#include "SessionSignals.h"

#include <memory>
#include <systemd/sd-bus.h>

#include "platform/linux/ClientSessionSignal.h"

namespace quorvantis::standin {

struct SessionSignals::Connection {
    sd_bus* bus = nullptr;
    bool hasArrived = false;

    ~Connection() { sd_bus_flush_close_unref(bus); }
};

SessionSignals::SessionSignals() : connection_(std::make_unique<Connection>()) {
    const auto receive = [](sd_bus_message*, void* connection, sd_bus_error*) {
        static_cast<Connection*>(connection)->hasArrived = true;
        return 0;
    };
    const bool isListening =
        sd_bus_open_user(&connection_->bus) >= 0 &&
        sd_bus_match_signal(connection_->bus, nullptr, nullptr, platform::clientSessionPath,
                            platform::clientSessionInterface, platform::clientSessionChanged, receive,
                            connection_.get()) >= 0;
    if (!isListening) connection_.reset();
}

SessionSignals::~SessionSignals() = default;

int SessionSignals::descriptor() const {
    return connection_ ? sd_bus_get_fd(connection_->bus) : -1;
}

bool SessionSignals::take() {
    if (!connection_) return false;
    connection_->hasArrived = false;
    int handled;
    while ((handled = sd_bus_process(connection_->bus, nullptr)) > 0) {}
    const bool hasArrived = connection_->hasArrived;
    if (handled < 0) connection_.reset();  // the bus is gone
    return hasArrived;
}

}  // namespace quorvantis::standin
