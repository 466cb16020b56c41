// bench/io_bench.cpp: reading and writing files, and the start of the program, beside bare loops over the same bytes and
// numbers.
// Bench layer; leans on the program's session. Run by hand: build/release/bench_io_bench [--benchmark_filter=PATTERN].
#include <fcntl.h>
#include <sys/mman.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <queue>
#include <random>
#include <string_view>
#include <vector>

#include "app/session.h"
#include "bench/side_by_side.h"
#include "core/sequence.h"
#include "host/kernel/dispatch.h"
#include "host/kernel/kernel.h"
#ifdef BRISOLAN_HAVE_PORTSMF
#include <portSMF/allegro.h>
#endif

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
// The bare loops. Each does the least that could give the result, into or out of an array of records as large as events:
// it knows that the bytes are sound, checks nothing, and serves no second caller.

struct record {
    std::int32_t values[8];
    std::int32_t more[4]; // to 48 bytes, like an event
};
static_assert(sizeof(record) == 48);

std::int32_t time_of(const record& r) {
    return r.values[0];
}
std::int32_t end_of(const record& r) {
    return r.values[0] + r.values[3];
}

// Decodes a sound MIDI file into records, note-offs paired with the note of their pitch. The records of a file of many
// tracks stay in the file's order: bringing them into one order of time is the object's own.
void bare_decode(std::string_view file, std::vector<record>& out) {
    out.clear();
    out.reserve(file.size() / 8);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(file.data());
    const unsigned char* const end = p + file.size();
    const auto var = [&p] {
        std::uint32_t v = 0;
        while (*p & 0x80) v = v << 7 | (*p++ & 0x7F);
        return v << 7 | *p++;
    };
    const int tpq = p[12] << 8 | p[13];
    int per_second = 120 * tpq / 60;
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
}

// Encodes records in order of time as a MIDI file of one track, or of one for each Track: each track grows by itself, so
// that the records are walked once.
class bare_encoder {
public:
    explicit bare_encoder(int tracks) : track(static_cast<std::size_t>(tracks)) {}

    std::string encode(const std::vector<record>& records) {
        const bool many = track.size() > 1;
        for (one_track& t : track) t.bytes.reserve(records.size() / track.size() * 10 + 64);
        if (many) track[0].bytes = std::string("\0\xFF\x51\x03\x07\xA1\x20", 7);
        for (const record& r : records) {
            one_track& t = track[many ? static_cast<std::size_t>(r.values[5] - 1) : 0];
            t.end_before(time_of(r));
            const sounding now{end_of(r), ++t.begun, static_cast<char>(0x90 + r.values[4] - 1),
                               static_cast<char>(r.values[1])};
            t.message(time_of(r), now.status, now.pitch, static_cast<char>(r.values[2]));
            t.pending.push(now);
        }
        std::string file = "MThd";
        put_big(file, 6, 4);
        put_big(file, many ? 1 : 0, 2);
        put_big(file, static_cast<std::uint32_t>(track.size()), 2);
        put_big(file, 96, 2);
        for (one_track& t : track) {
            t.end_before(INT32_MAX);
            t.bytes += std::string_view("\0\xFF\x2F\0", 4);
            file += "MTrk";
            put_big(file, static_cast<std::uint32_t>(t.bytes.size()), 4);
            file += t.bytes;
        }
        return file;
    }

private:
    struct sounding {
        std::int32_t end;
        std::int32_t begun; // of equal ends that which began last comes first
        char status, pitch;
        bool operator<(const sounding& b) const { return end != b.end ? end > b.end : begun < b.begun; }
    };
    struct one_track {
        std::string bytes;
        std::priority_queue<sounding> pending;
        std::int32_t begun = 0;
        std::int32_t time = 0;
        double carry = 0;

        void message(std::int32_t at, char status, char pitch, char vel) {
            const double f = (at - time) / 125.0 * 24.0 + carry;
            const auto ticks = static_cast<std::int32_t>(f);
            carry = f - ticks;
            time = at;
            char message[8];
            char* p = message;
            const auto v = static_cast<std::uint32_t>(ticks);
            if (v >> 21) *p++ = static_cast<char>(v >> 21 | 0x80);
            if (v >> 14) *p++ = static_cast<char>(v >> 14 | 0x80);
            if (v >> 7) *p++ = static_cast<char>(v >> 7 | 0x80);
            *p++ = static_cast<char>(v & 0x7F);
            *p++ = status;
            *p++ = pitch;
            *p++ = vel;
            bytes.append(message, p);
        }
        void end_before(std::int32_t next) {
            while (!pending.empty() && pending.top().end < next) {
                const sounding s = pending.top();
                pending.pop();
                message(s.end, s.status, s.pitch, 0);
            }
        }
    };
    std::vector<one_track> track;
};

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
// The object

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
    void read(const std::string& name, std::size_t n) {
        send("read", name);
        if (static_cast<std::size_t>(x->nevents) != n)
            bench::give_up("not as many events as were to be read");
    }
    void export_midi(const std::string& name, int tracks) {
        send("export", {atom(host_symbol(name.c_str())), atom(0), atom(tracks > 1)});
    }
    void save(const std::string& name, bool binary) {
        x->window->save_format = binary;
        if (kel_private<"saveto">(x, name.c_str(), std::int16_t{0}))
            bench::give_up("a document was not saved");
    }
};

// Reads a file of n notes into a new session.
bench::preparation reading(const std::string& name, std::size_t n) {
    return [name, n]() -> bench::work {
        auto* s = new session;
        return [s, name, n] { s->read(name, n); };
    };
}

// Does something to a session that has read a file of n notes.
template <class Work> bench::preparation having_read(const std::string& name, std::size_t n, Work work) {
    return [name, n, work]() -> bench::work {
        auto* s = new session;
        s->read(name, n);
        return [s, work] { work(*s); };
    };
}

template <class Loop> bench::preparation bare(Loop loop) {
    return [loop]() -> bench::work { return loop; };
}

// Runs something in a process of its own, for what it leaves on the disk.
void aside(const bench::preparation& prepare) {
    (void)bench::in_a_process(prepare);
}

void expect_same(const std::string& a, const std::string& b, const char* what) {
    if (a != b) bench::give_up(what);
}

// ---------------------------------------------------------------------------------------------------------------------
// What is measured

using benchmark::State;

// The object has its memory laid out by the system in large parts; the loop has it so where this is asked for.
enum class loop_memory { as_touched, laid_out };

void lay_out(const void* begin, std::size_t size) {
#ifdef MADV_POPULATE_WRITE
    constexpr std::uintptr_t PAGE = 4096;
    const auto from = (reinterpret_cast<std::uintptr_t>(begin) + PAGE - 1) & ~(PAGE - 1);
    const auto to = (reinterpret_cast<std::uintptr_t>(begin) + size) & ~(PAGE - 1);
    if (to <= from) return;
    (void)::madvise(reinterpret_cast<void*>(from), to - from, MADV_HUGEPAGE);
    (void)::madvise(reinterpret_cast<void*>(from), to - from, MADV_POPULATE_WRITE);
#else
    (void)begin;
    (void)size;
#endif
}

void decode_all(const std::string& file, std::size_t n, loop_memory memory) {
    std::vector<record> records;
    records.reserve(file.size() / 8);
    if (memory == loop_memory::laid_out) lay_out(records.data(), n * sizeof(record));
    bare_decode(file, records);
    if (records.size() != n) bench::give_up("the loop lost notes");
}

template <loop_memory MEMORY> void read_midi(State& state, std::int64_t n, int tracks) {
    const std::string file = make_midi(static_cast<int>(n), tracks);
    put_file("a.mid", file);
    const auto count = static_cast<std::size_t>(n);
    bench::side_by_side(state, static_cast<double>(n),
                        bare([&file, count] { decode_all(file, count, MEMORY); }), reading("a.mid", count));
}

#ifdef BRISOLAN_HAVE_PORTSMF
// In place of the floor the library that Debian has for the purpose, from the same file.
void read_midi_beside_portsmf(State& state, std::int64_t n, int tracks) {
    put_file("a.mid", make_midi(static_cast<int>(n), tracks));
    const auto count = static_cast<std::size_t>(n);
    const auto peer = bare([] {
        auto* read = new Alg_seq("a.mid", true);
        if (read->get_read_error() != alg_no_error) bench::give_up("libportsmf could not read the file");
    });
    bench::side_by_side(state, static_cast<double>(n), peer, reading("a.mid", count));
}
#endif

constexpr int SMALL_FILES = 1000;

std::string small_name(int i) {
    return "small" + std::to_string(i) + ".mid";
}

// Of about so many notes each.
void put_small_files(int about, std::vector<std::string>* files, std::size_t* notes) {
    *notes = 0;
    for (int i = 0; i < SMALL_FILES; ++i) {
        const int n = about + i % 7;
        files->push_back(make_midi(n, 1 + i % 4));
        put_file(small_name(i), files->back());
        *notes += static_cast<std::size_t>(n);
    }
}

void read_small_files(State& state, const bench::preparation& floor, std::size_t notes) {
    bench::side_by_side(state, static_cast<double>(notes), floor, [notes]() -> bench::work {
        auto* s = new session;
        return [s, notes] {
            std::size_t all = 0;
            for (int i = 0; i < SMALL_FILES; ++i) {
                s->send("read", small_name(i));
                all += static_cast<std::size_t>(s->x->nevents);
            }
            if (all != notes) bench::give_up("not as many events as were to be read");
        };
    });
}

// The files lie in the loop's memory before it begins. Asking the system for a file of two kilobytes takes half as long as
// decoding it, so of the smallest this tells of the system, too.
void read_small_files_from_memory(State& state, int about) {
    std::vector<std::string> files;
    std::size_t notes = 0;
    put_small_files(about, &files, &notes);
    read_small_files(state, bare([&files, notes] {
                         std::size_t all = 0;
                         std::vector<record> records;
                         for (const std::string& f : files) {
                             bare_decode(f, records);
                             all += records.size();
                         }
                         if (all != notes) bench::give_up("the loop lost notes");
                     }),
                     notes);
}

// The floor of the same work: the loop too opens, reads and closes each file, in as few calls as there can be, into one
// buffer that is large enough for all of them.
void read_small_files_opened(State& state, int about) {
    std::vector<std::string> files;
    std::size_t notes = 0;
    put_small_files(about, &files, &notes);
    const auto loop = [notes] {
        std::size_t all = 0;
        std::vector<record> records;
        std::vector<char> buffer(65536);
        for (int i = 0; i < SMALL_FILES; ++i) {
            const int fd = ::open(small_name(i).c_str(), O_RDONLY);
            const ssize_t size = ::read(fd, buffer.data(), buffer.size());
            ::close(fd);
            if (size <= 0) bench::give_up("a small file is gone");
            bare_decode({buffer.data(), static_cast<std::size_t>(size)}, records);
            all += records.size();
        }
        if (all != notes) bench::give_up("the loop lost notes");
    };
    read_small_files(state, bare(loop), notes);
}

bench::preparation writing(std::size_t n, int tracks) {
    return having_read("a.mid", n, [tracks](session& s) { s.export_midi("out.mid", tracks); });
}

void write_midi(State& state, std::int64_t n, int tracks) {
    const std::string file = make_midi(static_cast<int>(n), tracks);
    put_file("a.mid", file);
    const auto count = static_cast<std::size_t>(n);
    // The object's own order: of equal times a later track's note is first.
    aside(having_read("a.mid", count, [](session& s) { s.save("order.kel", false); }));
    const std::vector<record> records = bare_parse(get_file("order.kel"));
    aside(writing(count, tracks));
    expect_same(bare_encoder(tracks).encode(records), get_file("out.mid"), "the loop wrote another file");
    bench::side_by_side(state, static_cast<double>(n), bare([&records, tracks] {
                            benchmark::DoNotOptimize(bare_encoder(tracks).encode(records));
                        }),
                        writing(count, tracks));
}

void write_midi_beside_reading(State& state, std::int64_t n, int tracks) {
    put_file("a.mid", make_midi(static_cast<int>(n), tracks));
    const auto count = static_cast<std::size_t>(n);
    bench::side_by_side(state, static_cast<double>(n), reading("a.mid", count), writing(count, tracks));
}

// A document of notes that begin 20 ms after one another and last so long.
std::string document_of(std::int64_t n, std::int32_t duration) {
    std::vector<record> records;
    std::mt19937 random(12345);
    for (std::int32_t i = 0; i < n; ++i) {
        records.push_back(
            {{i * 20, static_cast<std::int32_t>(36 + random() % 60), 64, duration, 1, 1, 0, 0}, {}});
    }
    return "#N brisolan \"\";\n#X restore;\n" + bare_format(records) + "#X stop;\n";
}

// Thousands of notes sound at once when each lasts 99999 ms. Beside notes of 15 ms, none of which sounds with another.
void write_long_notes(State& state, std::int64_t n) {
    const auto count = static_cast<std::size_t>(n);
    put_file("short.kel", document_of(n, 15));
    put_file("long.kel", document_of(n, 99999));
    const auto export_it = [](session& s) { s.export_midi("out.mid", 1); };
    bench::side_by_side(state, static_cast<double>(n), having_read("short.kel", count, export_it),
                        having_read("long.kel", count, export_it));
}

void read_long_notes(State& state, std::int64_t n) {
    const auto count = static_cast<std::size_t>(n);
    put_file("short.kel", document_of(n, 15));
    put_file("long.kel", document_of(n, 99999));
    aside(having_read("short.kel", count, [](session& s) { s.export_midi("short.mid", 1); }));
    aside(having_read("long.kel", count, [](session& s) { s.export_midi("long.mid", 1); }));
    bench::side_by_side(state, static_cast<double>(n), reading("short.mid", count),
                        reading("long.mid", count));
}

void save(State& state, std::int64_t n, bool binary) {
    const auto count = static_cast<std::size_t>(n);
    put_file("a.mid", make_midi(static_cast<int>(n), 32));
    const auto saving = having_read("a.mid", count, [binary](session& s) { s.save("a.kel", binary); });
    const auto saving_text = having_read("a.mid", count, [](session& s) { s.save("text.kel", false); });
    aside(saving_text);
    const std::string text = get_file("text.kel");
    const std::vector<record> records = bare_parse(text);
    if (text.find(bare_format(records)) == std::string::npos) bench::give_up("the loop wrote other lines");
    const auto format = bare([&records] { benchmark::DoNotOptimize(bare_format(records)); });
    bench::side_by_side(state, static_cast<double>(n), format, saving);
    state.counters["file_bytes_each"] = static_cast<double>(fs::file_size("a.kel")) / static_cast<double>(n);
}

void load(State& state, std::int64_t n, bool binary) {
    const auto count = static_cast<std::size_t>(n);
    put_file("a.mid", make_midi(static_cast<int>(n), 32));
    aside(having_read("a.mid", count, [](session& s) { s.save("a.kel", false), s.save("a.kelb", true); }));
    const std::string text = get_file("a.kel");
    const auto parse = bare([&text, count] {
        if (bare_parse(text).size() != count) bench::give_up("the loop lost lines");
    });
    bench::side_by_side(state, static_cast<double>(n), parse, reading(binary ? "a.kelb" : "a.kel", count));
}

// ---------------------------------------------------------------------------------------------------------------------
// The program

std::string program() {
    return (fs::read_symlink("/proc/self/exe").parent_path() / "brisolan").string();
}

// Runs a command with its output thrown away; the processor time that it took, user and system, milliseconds.
double processor_time_of(const std::vector<std::string>& command) {
    const pid_t child = ::fork();
    if (child < 0) bench::give_up("no process");
    if (child == 0) {
        std::vector<char*> arguments;
        for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        const int null = ::open("/dev/null", O_WRONLY);
        ::dup2(null, 1);
        ::execv(arguments[0], arguments.data());
        ::_exit(127);
    }
    int status = 0;
    rusage used;
    if (::wait4(child, &status, 0, &used) != child || status != 0) bench::give_up("a command failed");
    const auto ms = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_usec) / 1e3;
    };
    return ms(used.ru_utime) + ms(used.ru_stime);
}

// The floor of a program's start is the start of one that does nothing.
void run_command(State& state, const std::vector<std::string>& command) {
    double least = 0;
    double least_floor = 0;
    bool first = true;
    for (auto _ : state) {
        const double floor = processor_time_of({"/bin/true"});
        const double took = processor_time_of(command);
        state.SetIterationTime(took / 1e3);
        if (first || took < least) least = took;
        if (first || floor < least_floor) least_floor = floor;
        first = false;
    }
    state.counters["floor_ms"] = least_floor;
    state.counters["best_ms"] = least;
    state.counters["ratio"] = least / least_floor;
}

void start_version(State& state) {
    run_command(state, {program(), "--version"});
}

void start_list(State& state) {
    put_file("small.mid", make_midi(100, 1));
    run_command(state, {program(), "list", "small.mid"});
}

void start_to_picture(State& state) {
    put_file("a.mid", make_midi(100'000, 32));
    run_command(state, {program(), "render", "--force", "a.mid", "out.png"});
}

// ---------------------------------------------------------------------------------------------------------------------

using sized_row = void (*)(State&, std::int64_t n, int kind);

void add_sizes(const std::string& name, sized_row row, int kind) {
    for (const std::int64_t n : {1'000, 10'000, 100'000, 1'000'000})
        bench::add_row(name, n, [row, n, kind](State& state) { row(state, n, kind); });
}

void add_rows() {
    const std::pair<const char*, int> formats[] = {{"format_0", 1}, {"format_1_32_tracks", 32}};
    for (const auto& [format, tracks] : formats)
        add_sizes(std::string("read_midi/") + format, read_midi<loop_memory::as_touched>, tracks);
    for (const auto& [format, tracks] : formats)
        add_sizes(std::string("read_midi/loop_in_memory_laid_out/") + format,
                  read_midi<loop_memory::laid_out>, tracks);
    for (const int about : {300, 1000, 3000}) {
        const std::string name = "read_1000_small_midi_files/of_" + std::to_string(about) + "_notes/";
        const std::int64_t notes = std::int64_t{SMALL_FILES} * about;
        bench::add_row(name + "loop_in_memory", notes,
                       [about](State& s) { read_small_files_from_memory(s, about); });
        bench::add_row(name + "loop_opens_files", notes,
                       [about](State& s) { read_small_files_opened(s, about); });
    }
    for (const auto& [format, tracks] : formats)
        add_sizes(std::string("write_midi/") + format, write_midi, tracks);
    for (const auto& [format, tracks] : formats)
        add_sizes(std::string("write_midi_beside_reading_it/") + format, write_midi_beside_reading, tracks);
    const auto long_notes = [](State& s, std::int64_t n, int write) {
        write ? write_long_notes(s, n) : read_long_notes(s, n);
    };
    add_sizes("read_midi_of_long_notes_beside_short", long_notes, 0);
    add_sizes("write_midi_of_long_notes_beside_short", long_notes, 1);
    add_sizes(
        "save/text", [](State& s, std::int64_t n, int binary) { save(s, n, binary); }, 0);
    add_sizes(
        "save/binary", [](State& s, std::int64_t n, int binary) { save(s, n, binary); }, 1);
    add_sizes(
        "load/text", [](State& s, std::int64_t n, int binary) { load(s, n, binary); }, 0);
    add_sizes(
        "load/binary", [](State& s, std::int64_t n, int binary) { load(s, n, binary); }, 1);
#ifdef BRISOLAN_HAVE_PORTSMF
    for (const auto& [format, tracks] : formats)
        add_sizes(std::string("read_midi_beside_libportsmf/") + format, read_midi_beside_portsmf, tracks);
#endif
    const std::pair<const char*, void (*)(State&)> starts[] = {{"start/version", start_version},
                                                               {"start/list", start_list},
                                                               {"start/picture_of_100k", start_to_picture}};
    for (const auto& [name, row] : starts)
        benchmark::RegisterBenchmark(name, row)->Iterations(20)->UseManualTime()->Unit(
            benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv) {
    std::vector<char*> arguments(argv, argv + argc);
    char columns[] = "--benchmark_counters_tabular=true";
    arguments.insert(arguments.begin() + 1, columns);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
    std::string folder = (fs::temp_directory_path() / "brisolan-bench-XXXXXX").string();
    if (!::mkdtemp(folder.data())) return 1;
    fs::current_path(folder);
    add_rows();
    benchmark::RunSpecifiedBenchmarks();
    fs::current_path("/");
    fs::remove_all(folder);
    return 0;
}
