// bench/io_bench.cpp: reading and writing files beside bare loops over the same bytes and numbers.
// Bench layer; leans on the program's session.
// Run by hand: build/release/bench_io_bench [REPETITIONS [PART OF A LINE'S NAME [NOTES]]]. Every measurement is a process of its own, so that each
// begins with memory that nobody has touched; the loop and the object take turns, and the least time of each counts.
// With BRISOLAN_BENCH_CPU set the times are the processor's and not the clock's: without the waiting for the disk, and
// steadier where others use the machine too.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "app/session.h"
#include "core/sequence.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/kernel.h"
#include "host/kernel/memory.h"

namespace {

namespace fs = std::filesystem;

// ---------------------------------------------------------------------------------------------------------------------
// Files to read

struct midi_note {
    std::uint32_t tick;
    std::uint32_t end;
    int pitch, vel, chan;
};

void put_var(std::string& out, std::uint32_t value) {
    char groups[5];
    int n = 0;
    do groups[n++] = static_cast<char>(value & 0x7F);
    while (value >>= 7);
    while (n > 1) out += static_cast<char>(groups[--n] | 0x80);
    out += groups[0];
}

void put_big(std::string& out, std::uint32_t value, int size) {
    while (size-- > 0) out += static_cast<char>(value >> 8 * size);
}

// Melodies of n notes in all, spread over the tracks in turn, all tracks going on at once.
std::string make_midi(int n, int tracks) {
    std::string file = "MThd";
    put_big(file, 6, 4);
    put_big(file, tracks > 1 ? 1 : 0, 2);
    put_big(file, static_cast<std::uint32_t>(tracks), 2);
    put_big(file, 480, 2);
    std::mt19937 random(12345);
    for (int t = 0; t < tracks; ++t) {
        std::string content;
        std::uint32_t pause = static_cast<std::uint32_t>(t);
        for (int i = t; i < n; i += tracks) {
            const char pitch = static_cast<char>(36 + random() % 60);
            const char status = static_cast<char>(0x90 | t % 16);
            put_var(content, pause);
            content += {status, pitch, static_cast<char>(1 + random() % 127)};
            put_var(content, static_cast<std::uint32_t>(20 + random() % 200));
            content += {status, pitch, 0};
            pause = static_cast<std::uint32_t>(random() % 40);
        }
        put_var(content, 0);
        content += {'\xFF', '\x2F', 0};
        file += "MTrk";
        put_big(file, static_cast<std::uint32_t>(content.size()), 4);
        file += content;
    }
    return file;
}

void put_file(const std::string& name, const std::string& bytes) {
    std::ofstream(name, std::ios::binary) << bytes;
}

std::string get_file(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// ---------------------------------------------------------------------------------------------------------------------
// The bare loops

struct record {
    std::int32_t values[8];
    std::int32_t more[4]; // to 48 bytes, like an event
};
static_assert(sizeof(record) == 48);

// Decodes a sound MIDI file into records, note-offs paired with the oldest sounding note of their pitch.
std::vector<record> bare_decode(const std::string& file) {
    std::vector<record> out;
    out.reserve(file.size() / 8);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(file.data());
    const unsigned char* const end = p + file.size();
    const auto var = [&p] {
        std::uint32_t v = 0;
        while (*p & 0x80) v = v << 7 | (*p++ & 0x7F);
        return v << 7 | *p++;
    };
    const int tpq = p[12] << 8 | p[13];
    const int per_second = 120 * tpq / 60;
    p += 14;
    for (int track = 1; p < end; ++track) {
        p += 8;
        std::int32_t open[128];
        std::fill(std::begin(open), std::end(open), -1);
        double carry = 0;
        std::int32_t time = 0;
        for (int status = 0;;) {
            const double f = carry + var() * 1000.0 / per_second;
            const auto step = static_cast<std::int32_t>(f);
            carry = f - step;
            time += step;
            if (*p & 0x80) status = *p++;
            if (status == 0xFF) {
                const int type = *p++;
                p += var();
                if (type == 0x2F) break;
                continue;
            }
            const int pitch = *p++;
            const int vel = *p++;
            if (vel > 0) {
                open[pitch] = static_cast<std::int32_t>(out.size());
                out.push_back({{time, pitch, vel, 10, (status & 15) + 1, track, 0, 0}, {}});
            } else if (open[pitch] >= 0) {
                record& r = out[static_cast<std::size_t>(open[pitch])];
                r.values[3] = time - r.values[0];
                open[pitch] = -1;
            }
        }
    }
    return out;
}

// Formats event lines as a document has them.
std::string bare_format(const std::vector<record>& records) {
    std::string out(records.size() * 64, '\0');
    char* p = out.data();
    std::int32_t before = 0;
    for (const record& r : records) {
        *p++ = '#';
        *p++ = 'X';
        for (int i = 0; i < 8; ++i) {
            *p++ = ' ';
            p = std::to_chars(p, p + 12, i == 0 ? r.values[0] - before : r.values[i]).ptr;
        }
        before = r.values[0];
        *p++ = ';';
        *p++ = '\n';
    }
    out.resize(static_cast<std::size_t>(p - out.data()));
    return out;
}

// Parses event lines that lie in a text between other ones.
std::vector<record> bare_parse(const std::string& text) {
    std::vector<record> out;
    out.reserve(text.size() / 24);
    const char* p = text.data();
    const char* const end = p + text.size();
    std::int32_t time = 0;
    while (p < end) {
        if (p[0] != '#' || p[1] != 'X' || (p[3] > '9' && p[3] != '-')) {
            while (*p++ != '\n') {
            }
            continue;
        }
        record r{};
        p += 2;
        for (int i = 0; i < 8; ++i) p = std::from_chars(p + 1, end, r.values[i]).ptr;
        p += 2;
        r.values[0] = time += r.values[0];
        out.push_back(r);
    }
    return out;
}

// ---------------------------------------------------------------------------------------------------------------------
// Measuring

struct measured {
    double ms = 0;
    double memory = 0; // growth of the process, bytes
};

bool processor_time = false;

double milliseconds() {
    timespec now;
    ::clock_gettime(processor_time ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// Runs `prepare`, then times `work`, in a process of its own.
measured in_a_process(const std::function<std::function<void()>()>& prepare) {
    int ends[2];
    if (::pipe(ends) != 0) std::abort();
    const pid_t child = ::fork();
    if (child < 0) std::abort();
    if (child == 0) {
        const std::function<void()> work = prepare();
        rusage before;
        rusage after;
        ::getrusage(RUSAGE_SELF, &before);
        const double start = milliseconds();
        work();
        const double took = milliseconds() - start;
        ::getrusage(RUSAGE_SELF, &after);
        const measured m{took, static_cast<double>(after.ru_maxrss - before.ru_maxrss) * 1024};
        const bool told = ::write(ends[1], &m, sizeof m) == sizeof m;
        ::_exit(told ? 0 : 1);
    }
    ::close(ends[1]);
    measured m;
    if (::read(ends[0], &m, sizeof m) != sizeof m) std::abort();
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    return m;
}

int repetitions = 7;
std::string wanted;   // only lines with this in their name
int wanted_notes = 0; // only this many notes; 0: all

// Prints what the loop and the object need, in turns, and their ratio.
void compare(const std::string& what, int n, const std::function<std::function<void()>()>& loop,
             const std::function<std::function<void()>()>& object) {
    if (what.find(wanted) == std::string::npos || (wanted_notes != 0 && n != wanted_notes)) return;
    measured a;
    measured b;
    for (int i = 0; i < repetitions; ++i) {
        const measured la = in_a_process(loop);
        const measured lb = in_a_process(object);
        if (i == 0 || la.ms < a.ms) a = la;
        if (i == 0 || lb.ms < b.ms) b = lb;
    }
    std::printf("%-44s %9d %10.2f %10.2f %7.2f %8.1f %8.1f\n", what.c_str(), n, a.ms, b.ms, b.ms / a.ms,
                b.ms * 1e6 / n, b.memory / n);
    std::fflush(stdout);
}

// The object in a host of its own; in a child process, never given back.
struct session {
    headless_session host;
    brisolan* x = host.make();

    void send(const char* selector, const std::vector<atom>& arguments = {}) {
        kel_send(x, host_symbol(selector), arguments);
        kel_run_queue();
    }
    void send(const char* selector, const std::string& name) {
        send(selector, {atom(host_symbol(name.c_str()))});
    }
    void expect(int n) const {
        if (x->nevents == n) return;
        std::fprintf(stderr, "%d events and not %d\n", static_cast<int>(x->nevents), n);
        ::_exit(2);
    }
};

std::function<void()> nothing_less_than(const std::function<std::size_t()>& work, std::size_t n) {
    return [work, n] {
        if (work() < n) ::_exit(2);
    };
}

// ---------------------------------------------------------------------------------------------------------------------
// What is measured

void reading_midi(int n, int tracks) {
    const std::string what = tracks == 1 ? "read MIDI, format 0" : "read MIDI, format 1, 32 tracks";
    const std::string file = make_midi(n, tracks);
    put_file("a.mid", file);
    compare(
        what, n,
        [&] {
            return nothing_less_than([&file] { return bare_decode(file).size(); },
                                     static_cast<std::size_t>(n));
        },
        [&] {
            auto* s = new session;
            return [s, n] {
                s->send("read", "a.mid");
                s->expect(n);
            };
        });
}

void reading_small_files() {
    constexpr int FILES = 1000;
    constexpr int NOTES = 300;
    std::vector<std::string> files;
    for (int i = 0; i < FILES; ++i) {
        files.push_back(make_midi(NOTES + i % 7, 1 + i % 4));
        put_file("small" + std::to_string(i) + ".mid", files.back());
    }
    compare(
        "read 1000 small MIDI files", FILES * NOTES,
        [&] {
            return nothing_less_than(
                [&files] {
                    std::size_t all = 0;
                    for (const std::string& f : files) all += bare_decode(f).size();
                    return all;
                },
                FILES * NOTES);
        },
        [&] {
            auto* s = new session;
            return [s] {
                for (int i = 0; i < FILES; ++i) s->send("read", "small" + std::to_string(i) + ".mid");
            };
        });
    // The loop has the bytes in memory; what asking the system for them costs by itself:
    compare(
        "  the same, the loop opening its files too", FILES * NOTES,
        [&] {
            return nothing_less_than(
                [] {
                    std::size_t all = 0;
                    for (int i = 0; i < FILES; ++i)
                        all += bare_decode(get_file("small" + std::to_string(i) + ".mid")).size();
                    return all;
                },
                FILES * NOTES);
        },
        [&] {
            auto* s = new session;
            return [s] {
                for (int i = 0; i < FILES; ++i) s->send("read", "small" + std::to_string(i) + ".mid");
            };
        });
}

std::function<std::function<void()>()> filled(const std::string& file, std::function<void(session*)> work) {
    return [file, work] {
        auto* s = new session;
        s->send("read", file);
        return [s, work] { work(s); };
    };
}

void writing_midi(int n, int tracks) {
    put_file("a.mid", make_midi(n, tracks));
    compare(
        std::string("write MIDI (left: read it), ") + (tracks == 1 ? "format 0" : "format 1, 32 tracks"), n,
        [] {
            auto* s = new session;
            return [s] { s->send("read", "a.mid"); };
        },
        filled("a.mid", [tracks](session* s) {
            s->send("export", {atom(host_symbol("out.mid")), atom(0), atom(tracks > 1)});
        }));
}

void documents(int n) {
    put_file("a.mid", make_midi(n, 32));
    const std::vector<record> records = bare_decode(get_file("a.mid"));
    std::vector<record> sorted = records;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const record& a, const record& b) { return a.values[0] < b.values[0]; });
    const auto format = [&] {
        return nothing_less_than([&sorted] { return bare_format(sorted).size(); }, 1);
    };
    compare("save as text", n, format, filled("a.mid", [](session* s) { s->send("writekel", "a.kel"); }));
    compare("save in binary form", n, format, filled("a.mid", [](session* s) {
                s->x->window->save_format = 1;
                (void)kel_private<"saveto">(s->x, "a.kelb", std::int16_t{0});
            }));
    filled("a.mid", [](session* s) {
        s->send("writekel", "a.kel");
        s->x->window->save_format = 1;
        (void)kel_private<"saveto">(s->x, "a.kelb", std::int16_t{0});
    })()();
    const std::string text = get_file("a.kel");
    const auto parse = [&] {
        return nothing_less_than([&text] { return bare_parse(text).size(); }, static_cast<std::size_t>(n));
    };
    const auto load = [n](const char* name) {
        return [n, name]() -> std::function<void()> {
            auto* s = new session;
            return [s, n, name] {
                s->send("read", name);
                s->expect(n);
            };
        };
    };
    compare("load text", n, parse, load("a.kel"));
    compare("load the binary form", n, parse, load("a.kelb"));
    std::printf("  %.1f bytes an event as text, %.1f in binary form\n",
                static_cast<double>(fs::file_size("a.kel")) / n,
                static_cast<double>(fs::file_size("a.kelb")) / n);
}

} // namespace

int main(int argc, char** argv) {
    processor_time = std::getenv("BRISOLAN_BENCH_CPU") != nullptr;
    if (argc > 1) repetitions = std::max(1, std::atoi(argv[1]));
    if (argc > 2) wanted = argv[2];
    if (argc > 3) wanted_notes = std::atoi(argv[3]);
    std::string folder = (fs::temp_directory_path() / "brisolan-bench-XXXXXX").string();
    if (!::mkdtemp(folder.data())) return 1;
    fs::current_path(folder);
    std::printf("%-44s %9s %10s %10s %7s %8s %8s\n", "", "notes", "loop ms", "object ms", "ratio", "ns/note",
                "B/note");
    for (const int n : {10000, 100000, 1000000}) {
        reading_midi(n, 1);
        reading_midi(n, 32);
    }
    reading_small_files();
    for (const int n : {10000, 100000, 1000000}) {
        writing_midi(n, 1);
        writing_midi(n, 32);
    }
    for (const int n : {10000, 100000, 1000000}) documents(n);
    fs::current_path("/");
    fs::remove_all(folder);
    return 0;
}
