// app/session.cpp: a running host with the object's class loaded.
// Layer: program.
#include "app/session.h"

#include "core/class.h"

void load_brisolan() {
    // While a class is loaded, the host binds "#I" to the name it goes by.
    symbol* const loading = host_symbol("#I");
    loading->thing = host_symbol("brisolan");
    brisolan_main();
    loading->thing = nullptr;
}

headless_session::headless_session() {
    headless_start(&machine);
    load_brisolan();
    patcher = kel_patcher_new();
    kel_patcher_build(patcher);
}

headless_session::~headless_session() {
    machine.print = nullptr;
    kel_patcher_free(patcher);
    headless_end();
}

brisolan* headless_session::make(const std::string& name) {
    const atom argument(host_symbol(name.c_str()));
    return static_cast<brisolan*>(kel_make(host_symbol("brisolan"), {&argument, name.empty() ? 0U : 1U}));
}
