// tests/support/ordinary_user.h: the rights of somebody who is no administrator, while a test looks at rights.
// Test layer. Used by tests of what is written where.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

// Gives up an administrator's rights over files for a scope's life, in a folder that is then the ordinary user's.
class ordinary_user {
public:
    explicit ordinary_user(const std::filesystem::path& folder) {
        constexpr uid_t nobody = 65534;
        if (administrator && (::chown(folder.c_str(), nobody, nobody) != 0 || ::seteuid(nobody) != 0))
            std::abort();
    }
    ~ordinary_user() {
        if (administrator && ::seteuid(0) != 0) std::abort();
    }
    ordinary_user(const ordinary_user&) = delete;
    ordinary_user& operator=(const ordinary_user&) = delete;

private:
    const bool administrator = ::geteuid() == 0;
};
