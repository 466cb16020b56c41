// host/desktop/jack_watch.cpp: a JACK client that waits for the server's end.
// Layer: desktop platform.
#include "host/desktop/jack_watch.h"

#include <atomic>

#include <jack/jack.h>

struct jack_watch::state {
    jack_client_t* client = nullptr;
    std::atomic<bool> alive{true};
};

namespace {

// Keeps JACK's own lines off standard error.
void be_quiet() {
    const auto drop = [](const char*) {};
    jack_set_error_function(drop);
    jack_set_info_function(drop);
}

} // namespace

std::unique_ptr<jack_watch> jack_watch::open() {
    be_quiet();
    std::unique_ptr<jack_watch> w(new jack_watch);
    w->inside = std::make_unique<state>();
    w->inside->client = jack_client_open("brisolan-watch", JackNoStartServer, nullptr);
    if (!w->inside->client) return nullptr;
    jack_on_shutdown(
        w->inside->client, [](void* s) { static_cast<state*>(s)->alive = false; }, w->inside.get());
    if (jack_activate(w->inside->client) != 0) return nullptr;
    return w;
}

jack_watch::~jack_watch() {
    if (inside && inside->client) jack_client_close(inside->client);
}

bool jack_watch::alive() const {
    return inside->alive;
}

bool jack_watch::has_port(const char* name) const {
    return alive() && jack_port_by_name(inside->client, name);
}
