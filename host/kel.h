// host/kel.h: the host's object interface. Everything the object asks of the host that carries it, and nothing else.
// Layer: interface; leans on host/toolbox.h for points, rectangles, ports and handles.
// Used by every room of the object, by host/boxes/, and implemented by host/kernel/ (or by another host).
//
// Levels. The main level is one thread: windows, deferred calls, redraw, files, construction. The scheduler level is
// another: clocks, MIDI input and whatever cords carry from there; each of its callbacks runs with the lockout held.
// The tag that ends a declaration's comment says who may call it:
//   [main]       only the main thread
//   [scheduler]  the scheduler level, or the main thread while it holds the lockout
//   [both]       either, at any time
// The object's routines carry the same tags. In a debug build the embedded host checks the level at which its own are
// called wherever the wrong one would do harm unseen.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>
#include <span>
#include <type_traits>
#include <utility>

#include "host/toolbox.h"

// ---------------------------------------------------------------------------------------------------------------------
// Values that both levels see

// A number that one level may write while the other reads it: reads and writes like a plain T, never torn, in no order
// with other memory. The compound operators are a read and then a write, for the one level that writes at a time.
template <class T> struct cell {
    std::atomic<T> raw{};

    constexpr cell() = default;
    constexpr cell(T value) : raw(value) {}
    cell(const cell& other) : raw(other.get()) {}
    cell& operator=(const cell& other) {
        set(other.get());
        return *this;
    }
    T operator=(T value) {
        set(value);
        return value;
    }
    operator T() const { return get(); }
    T get() const { return raw.load(std::memory_order_relaxed); }
    void set(T value) { raw.store(value, std::memory_order_relaxed); }
    T operator+=(T by) { return *this = static_cast<T>(get() + by); }
    T operator-=(T by) { return *this = static_cast<T>(get() - by); }
    // Reads and clears in one step, so that a flag raised meanwhile by the other level is not lost.
    T take() { return raw.exchange(T{}, std::memory_order_acq_rel); }
};

// ---------------------------------------------------------------------------------------------------------------------
// Symbols and atoms

// One interned text. Two symbols of equal text are one record, so symbols are compared by address. `thing` is what the
// text is bound to: for a receiver ("#N", "#X", an instance's name) a host_object, for "#P" the host_patcher being
// built, for "#I" the symbol that names the class being loaded; null when bound to nothing. The record lives as long as
// the process. `thing` is read and written at main level only.
struct symbol {
    const char* name;
    void* thing;
};

// The symbol of a null-terminated text, interned at its first use. Never null. [main]
symbol* host_symbol(const char* text);

enum atom_type : std::uint8_t { A_NOTHING = 0, A_LONG = 1, A_FLOAT = 2, A_SYM = 3 };

// One value of a message. Only the member that `type` names may be read.
struct atom {
    atom_type type = A_NOTHING;
    union {
        std::int32_t l = 0;
        float f;
        symbol* s;
    };

    atom() = default;
    atom(std::int32_t value) : type(A_LONG), l(value) {}
    atom(float value) : type(A_FLOAT), f(value) {}
    atom(symbol* value) : type(A_SYM), s(value) {}
};

// ---------------------------------------------------------------------------------------------------------------------
// Objects, inlets, outlets

struct host_class;
struct host_outlet;
struct host_patcher;
struct host_inlets; // the host's own record of an object's proxy inlets

// The header of every instance; an instance record derives from it. Filled by host_object_new; only the host writes it.
struct host_object {
    host_class* cls = nullptr;
    host_outlet* outlets = nullptr; // the leftmost outlet: the one created last
    host_inlets* inlets = nullptr;  // inlets beyond the leftmost
    symbol* selector = nullptr;     // reserved for the host
};

// A new instance record of the class: every member as its declaration initialises it, the header filled. T is the type
// that the class was set up with. Lives until host_object_free; the caller's constructor returns it to the host. [main]
template <class T> T* host_object_new(host_class* c);

// Runs the class's destructor on the object, then gives its outlets, inlets, cords and storage back. [main]
void host_object_free(host_object* x);

// Creates the integer inlet with this number, 1 to 9, to the right of the object's own. Freed with the object. [main]
void host_inlet_int(host_object* x, int number);

// Creates an integer outlet left of those created before. Freed with the object. [main]
host_outlet* host_outlet_int_new(host_object* x);

// Sends a value down every cord of the outlet, in the order of the cords, before it returns. [scheduler]
void host_outlet_int(host_outlet* o, std::int32_t value);

// Creates an outlet for messages of any kind left of those created before. Freed with the object. [main]
host_outlet* host_outlet_new(host_object* x);

// Sends a message down every cord of the outlet, in the order of the cords, before it returns. A "list" of one number
// arrives as that number. What a receiver does not take gives a console line, and so does a message for an inlet beyond
// the leftmost, where only integers arrive. [scheduler]
void host_outlet_message(host_outlet* o, symbol* selector, std::int32_t argc, const atom* argv);

// ---------------------------------------------------------------------------------------------------------------------
// Classes and messages

// What a message's argument must be. A message has up to three typed arguments, or one of the last two words alone.
enum arg_word : std::uint8_t {
    ARG_NONE,    // no arguments; beyond the last word
    ARG_LONG,    // an integer; a float is truncated toward zero
    ARG_FLOAT,   // a float; an integer is converted
    ARG_SYM,     // a symbol
    ARG_DEFLONG, // an integer, 0 when absent
    ARG_DEFSYM,  // a symbol, the empty symbol when absent
    ARG_LIST,    // selector, count and atom array as they came
    ARG_PRIVATE  // sent by the host itself, with the arguments that host_private tells; never by a user
};

constexpr int MAX_ARG_WORDS = 3;

// A message name as a template argument.
template <std::size_t N> struct host_name {
    char text[N]{};
    constexpr host_name(const char (&from)[N]) {
        for (std::size_t i = 0; i < N; ++i) text[i] = from[i];
    }
};

struct host_atombuf;

// Which edit-menu commands are to be enabled; filled by the object's "chkmenu". The host clears it before it asks.
struct host_menustate {
    std::uint8_t paste = 0;     // 1: there is text to paste
    std::uint8_t cut = 0;       // 1: cut, copy and clear have something to work on
    std::uint8_t selectall = 0; // 1: select all makes sense
};

// A file service's result: 0 done, else one of the HOST_ERR codes below.
using host_err = std::int32_t;

// The arguments, after the instance, of each message that the host itself sends. A name without an entry here is no
// private message, and registering it does not compile. All are delivered at main level; "assist" writes at most
// HOST_ASSIST_SIZE characters with the null.
constexpr int HOST_ASSIST_SIZE = 256;
template <host_name Name> struct host_private;
template <> struct host_private<"update"> { using signature = void(); };
template <> struct host_private<"click"> { using signature = int(Point where, int modifiers); };
template <> struct host_private<"dblclick"> { using signature = void(); };
template <> struct host_private<"filename"> { using signature = void(); };
template <> struct host_private<"save"> { using signature = void(host_atombuf* into); };
template <> struct host_private<"key"> { using signature = void(int code); };
template <> struct host_private<"cut"> { using signature = void(); };
template <> struct host_private<"copy"> { using signature = void(); };
template <> struct host_private<"paste"> { using signature = void(); };
template <> struct host_private<"clr"> { using signature = void(); };
template <> struct host_private<"selectall"> { using signature = void(); };
template <> struct host_private<"chkmenu"> { using signature = void(host_menustate* state); };
template <> struct host_private<"saveto"> {
    using signature = host_err(const char* name, std::int16_t path);
};
template <> struct host_private<"cursor"> { using signature = void(Point where, int modifiers); };
template <> struct host_private<"cursorout"> { using signature = void(Point where, int modifiers); };
template <> struct host_private<"chkscroll"> { using signature = void(); };
template <> struct host_private<"scroll"> { using signature = void(); };
template <> struct host_private<"wsize"> { using signature = void(); };
template <> struct host_private<"info"> { using signature = void(); };
template <> struct host_private<"pstate"> { using signature = void(host_atombuf* into); };
template <> struct host_private<"loadbang"> { using signature = void(); }; // the patch around it is complete
template <> struct host_private<"assist"> { using signature = void(bool inlet, int index, char* text); };

// A handler with its argument words, its own type taken away again. Made only by host_typed and host_typed_private, so
// that a handler whose parameters do not fit its words does not compile.
struct host_handler {
    // Calls the handler with atoms that the host has checked against the words and completed with their defaults.
    using delivery = void (*)(host_object* x, symbol* selector, std::int32_t argc, const atom* argv);
    delivery deliver = nullptr;
    std::array<arg_word, MAX_ARG_WORDS> words{}; // ARG_NONE after the last
    void (*routine)() = nullptr;     // private messages: the handler with the instance as host_object*
    const void* signature = nullptr; // private messages: which signature `routine` has
};

namespace host_detail {

template <arg_word W> struct argument;
template <> struct argument<ARG_LONG> {
    using type = std::int32_t;
    static type of(const atom& a) { return a.l; }
};
template <> struct argument<ARG_DEFLONG> : argument<ARG_LONG> {};
template <> struct argument<ARG_FLOAT> {
    using type = float;
    static type of(const atom& a) { return a.f; }
};
template <> struct argument<ARG_SYM> {
    using type = symbol*;
    static type of(const atom& a) { return a.s; }
};
template <> struct argument<ARG_DEFSYM> : argument<ARG_SYM> {};

template <class F> struct handler_traits;
template <class R, class T, class... A> struct handler_traits<R (*)(T*, A...)> {
    using result = R;
    using instance = T;
    static_assert(std::is_base_of_v<host_object, T>, "a handler's first parameter is the instance record");
    template <class... W> static constexpr bool takes = std::is_same_v<void(A...), void(W...)>;
};

template <arg_word... W> constexpr bool is_list = false;
template <> inline constexpr bool is_list<ARG_LIST> = true;

template <class Signature> inline constexpr char signature_tag = 0;

// The instance type is taken off a private handler here, and put on again by nobody but the host's typed send.
template <auto Handler, class Signature> struct private_routine;
template <auto Handler, class R, class... A> struct private_routine<Handler, R(A...)> {
    using traits = handler_traits<decltype(Handler)>;
    static_assert(traits::template takes<A...> && std::is_same_v<typename traits::result, R>,
                  "the handler's parameters are not those of this private message");
    static R call(host_object* x, A... a) {
        return Handler(static_cast<typename traits::instance*>(x), a...);
    }
};

} // namespace host_detail

// A handler for a message with these argument words: void h(T* x, arguments…), for ARG_LIST
// void h(T* x, symbol* selector, std::int32_t argc, const atom* argv). A result is dropped.
template <auto Handler, arg_word... Words> constexpr host_handler host_typed() {
    using traits = host_detail::handler_traits<decltype(Handler)>;
    using T = typename traits::instance;
    static_assert(sizeof...(Words) <= MAX_ARG_WORDS);
    host_handler h;
    if constexpr (host_detail::is_list<Words...>) {
        static_assert(traits::template takes<symbol*, std::int32_t, const atom*>,
                      "an ARG_LIST handler takes selector, count and atoms");
        h.deliver = [](host_object* x, symbol* s, std::int32_t argc, const atom* argv) {
            Handler(static_cast<T*>(x), s, argc, argv);
        };
    } else {
        static_assert(traits::template takes<typename host_detail::argument<Words>::type...>,
                      "the handler's parameters do not fit its argument words");
        h.deliver = [](host_object* x, symbol*, std::int32_t, [[maybe_unused]] const atom* argv) {
            [&]<std::size_t... I>(std::index_sequence<I...>) {
                Handler(static_cast<T*>(x), host_detail::argument<Words>::of(argv[I])...);
            }
            (std::make_index_sequence<sizeof...(Words)>{});
        };
    }
    std::size_t i = 0;
    ((h.words[i++] = Words), ...);
    return h;
}

// The handler for a message that the host itself sends; its parameters are those that host_private<Name> tells.
template <host_name Name, auto Handler> host_handler host_typed_private() {
    using signature = typename host_private<Name>::signature;
    host_handler h;
    h.words[0] = ARG_PRIVATE;
    h.routine = reinterpret_cast<void (*)()>(&host_detail::private_routine<Handler, signature>::call);
    h.signature = &host_detail::signature_tag<signature>;
    return h;
}

// What host_class_setup needs to know of an instance record and its constructor and destructor.
struct host_lifecycle {
    // Builds an object from atoms that the host has checked against `words`; for ARG_LIST from those that came.
    host_object* (*construct)(std::int32_t argc, const atom* argv) = nullptr;
    void (*destroy)(host_object* x) = nullptr;
    std::array<arg_word, MAX_ARG_WORDS> words{}; // the constructor's arguments
    std::size_t size = 0;                        // of the instance record
};

// The lifecycle of a class: New is T* (*)(arguments…) as the words tell, for ARG_LIST T* (*)(argc, argv), and returns the
// object to put into the patcher (null refuses); Free is void (*)(T*) and leaves the record itself to the host.
template <auto New, auto Free, arg_word... Words> constexpr host_lifecycle host_typed_lifecycle() {
    using T = typename host_detail::handler_traits<decltype(Free)>::instance;
    static_assert(std::is_trivially_destructible_v<T>, "the host gives the record's storage back as it is");
    host_lifecycle l;
    if constexpr (host_detail::is_list<Words...>) {
        static_assert(std::is_invocable_r_v<T*, decltype(New), std::int32_t, const atom*>,
                      "an ARG_LIST constructor takes count and atoms");
        l.construct = [](std::int32_t argc, const atom* argv) -> host_object* { return New(argc, argv); };
    } else {
        static_assert(
            std::is_invocable_r_v<T*, decltype(New), typename host_detail::argument<Words>::type...>,
            "the constructor's parameters do not fit its argument words");
        l.construct = [](std::int32_t, [[maybe_unused]] const atom* argv) -> host_object* {
            return [&]<std::size_t... I>(std::index_sequence<I...>) {
                return New(host_detail::argument<Words>::of(argv[I])...);
            }
            (std::make_index_sequence<sizeof...(Words)>{});
        };
    }
    l.destroy = [](host_object* x) { Free(static_cast<T*>(x)); };
    l.size = sizeof(T);
    std::size_t i = 0;
    ((l.words[i++] = Words), ...);
    return l;
}

// Registers a class under a name, for the life of the process; a second registration of the name replaces the first for
// objects made from then on. [main]
host_class* host_class_setup(const char* name, const host_lifecycle& lifecycle);

// The class's handler for a named message; for the integer, float and bang at the left inlet; for an integer at inlet
// `number`, 1 to 9. A name registered twice keeps the later handler. [main]
void host_class_addmethod(host_class* c, const char* name, const host_handler& handler);
void host_class_addint(host_class* c, const host_handler& handler);
void host_class_addfloat(host_class* c, const host_handler& handler);
void host_class_addbang(host_class* c, const host_handler& handler);
void host_class_addinletint(host_class* c, int number, const host_handler& handler);

// The class's handler for whatever it has no other one for, an ARG_LIST handler: a lone number comes as a "list" of one
// atom, a bang as "bang". [main]
void host_class_addanything(host_class* c, const host_handler& handler);

namespace host_detail {
// Zeroed storage of the class's instance size (which must be `size`), and the header's first filling. [main]
void* object_storage(host_class* c, std::size_t size);
void object_begin(host_class* c, host_object* x);
} // namespace host_detail

template <class T> T* host_object_new(host_class* c) {
    T* x = new (host_detail::object_storage(c, sizeof(T))) T{};
    host_detail::object_begin(c, x);
    return x;
}

// ---------------------------------------------------------------------------------------------------------------------
// Console and notices

// One line on the host console, a notice or an error; printf's format, at most 1000 bytes. The host prefixes nothing
// that the object must know of. [both]
[[gnu::format(printf, 1, 2)]] void host_post(const char* format, ...);
[[gnu::format(printf, 1, 2)]] void host_error(const char* format, ...);

// Opens the host's inspector for the object: it reads "pstate" and writes back "setparam" lines. [main]
void host_inspector_open(host_object* x);

// The object goes away: whoever listens to it is told, its named connection points end. [main]
void host_notify_free(host_object* x);

// Makes x the named connection point `name`, and binds the symbol to it. Ended by host_notify_free. [main]
void host_connection_server(host_object* x, symbol* name);

// Sends a message without arguments to every listener of the named connection point; nothing when there is none. [main]
void host_connection_send(symbol* name, symbol* message);

// Marks the patcher changed, so that the host offers to save it. [main]
void host_patcher_dirty(host_patcher* p);

// ---------------------------------------------------------------------------------------------------------------------
// Time, deferral, locking

struct host_clock;
struct host_qelem;
struct host_critical;

namespace host_detail {
host_clock* clock_create(void* owner, void (*routine)(void*));
host_qelem* qelem_create(void* owner, void (*routine)(void*));
using deferred = void (*)(host_object* x, symbol* selector, std::int32_t argc, const atom* argv);
void defer_front(host_object* x, deferred routine, symbol* selector, std::int32_t argc, const atom* argv);
void defer_back(host_object* x, deferred routine, symbol* selector, std::int32_t argc, const atom* argv);

template <class F> struct routine_owner;
template <class T> struct routine_owner<void (*)(T*)> { using type = T; };

template <auto Routine>
inline constexpr deferred deferred_call = [](host_object* x, symbol* s, std::int32_t argc, const atom* argv) {
    Routine(static_cast<typename handler_traits<decltype(Routine)>::instance*>(x), s, argc, argv);
};
} // namespace host_detail

// A clock that calls Routine(owner) at scheduler level, lockout held, when it comes due. Owned by the caller. [main]
template <auto Routine, class T> host_clock* host_clock_new(T* owner) {
    static_assert(std::is_same_v<typename host_detail::routine_owner<decltype(Routine)>::type, T>);
    return host_detail::clock_create(owner, [](void* x) { Routine(static_cast<T*>(x)); });
}

// Lets the clock come due `ms` milliseconds from now (below 0 counts as 0), in place of any time set before. [both]
void host_clock_delay(host_clock* c, std::int32_t ms);

// The clock does not come due any more until it is set again. [both]
void host_clock_unset(host_clock* c);

// Unsets and frees the clock; null is allowed. Its routine is not running when this returns. [main]
void host_clock_free(host_clock* c);

// A low-priority call of Routine(owner) at main level; however often it is set before it runs, it runs once. Owned by
// the caller. [main]
template <auto Routine, class T> host_qelem* host_qelem_new(T* owner) {
    static_assert(std::is_same_v<typename host_detail::routine_owner<decltype(Routine)>::type, T>);
    return host_detail::qelem_create(owner, [](void* x) { Routine(static_cast<T*>(x)); });
}

// Schedules the call behind those already queued; nothing when it is scheduled already. Never blocks. [both]
void host_qelem_set(host_qelem* q);

// A scheduled call does not take place. [main]
void host_qelem_unset(host_qelem* q);

// Unsets and frees the queued call; null is allowed. [main]
void host_qelem_free(host_qelem* q);

// Runs Routine(x, selector, argc, argv) at main level from the low-priority queue: host_defer puts it at the queue's
// front, host_defer_low at its back. The atoms are copied. A call whose object is freed meanwhile does not take place.
// Never blocks. [both]
template <auto Routine, class T>
void host_defer(T* x, symbol* selector, std::int32_t argc, const atom* argv) {
    host_detail::defer_front(x, host_detail::deferred_call<Routine>, selector, argc, argv);
}
template <auto Routine, class T>
void host_defer_low(T* x, symbol* selector, std::int32_t argc, const atom* argv) {
    host_detail::defer_back(x, host_detail::deferred_call<Routine>, selector, argc, argv);
}

// Turns the lockout on (true) or off for the calling thread and tells what it was, to be given back afterwards. Turning
// it on at main level waits out the scheduler callback that runs and keeps the next ones off. Nests. [both]
bool host_lockout_set(bool on);

// The lockout on for the scope's life, and at its end as it was before: no callback of the scheduler comes in between.
// [both]
class host_locked_out {
public:
    host_locked_out() : before(host_lockout_set(true)) {}
    ~host_locked_out() { host_lockout_set(before); }
    host_locked_out(const host_locked_out&) = delete;
    host_locked_out& operator=(const host_locked_out&) = delete;

private:
    bool before;
};

// A critical region: one thread at a time inside; the same thread may enter again. Null stands for the host's global
// region. Entering may wait: take the lockout first, always in that order. [both]
host_critical* host_critical_new();
void host_critical_enter(host_critical* c);
void host_critical_exit(host_critical* c);
void host_critical_free(host_critical* c);

// Time since the host started, nanoseconds; at scheduler level the time at which the callback that runs was due, so that
// what is measured and set from it does not drift. [both]
std::int64_t host_now();

// In a debug build, stops the program when the calling level is not the one the tag allows. [both]
void host_expect_main(const char* where);
void host_expect_scheduler(const char* where);

// ---------------------------------------------------------------------------------------------------------------------
// Atom buffers: lists of messages, as in a saved patcher

// An empty buffer; freed with host_atombuf_free. [main]
host_atombuf* host_atombuf_new();
void host_atombuf_free(host_atombuf* b);

// Appends one message line. [main]
void host_atombuf_append_atoms(host_atombuf* b, std::span<const atom> line);

// Appends one message line of symbols, integers and floats. [main]
template <class... A> void host_atombuf_append(host_atombuf* b, A... values) {
    const std::array<atom, sizeof...(A)> line{atom(values)...};
    host_atombuf_append_atoms(b, line);
}

// Delivers every line in order: its first atom names the receiver, the rest is the message. A line that nobody takes
// gives one line on the console and the next one is delivered. [main]
void host_atombuf_eval(const host_atombuf* b);

// The atom at a position counted from 0 through all lines, line ends not counted; false past the end. [main]
bool host_atombuf_getatom(const host_atombuf* b, std::int32_t index, atom* out);

// How a document is written: 0 text, 2 binary. What an object passes through unchanged counts as text.
enum : int { ATOMBUF_TEXT = 0, ATOMBUF_BINARY = 2 };

// Reads a whole document (binary false: the text form) into the buffer, which must be empty and stays so on failure;
// writes the buffer as a document of type 'TEXT' or 'kelb'. [main]
host_err host_atombuf_read(host_atombuf* b, const char* name, std::int16_t path, bool binary);
host_err host_atombuf_write(const host_atombuf* b, const char* name, std::int16_t path, int form);

// ---------------------------------------------------------------------------------------------------------------------
// Files and dialogs

// A file's kind as the file service keeps it: four characters, the first the highest byte.
using file_type = std::uint32_t;
constexpr file_type host_type(const char (&four)[5]) {
    return static_cast<file_type>(static_cast<unsigned char>(four[0])) << 24 |
           static_cast<file_type>(static_cast<unsigned char>(four[1])) << 16 |
           static_cast<file_type>(static_cast<unsigned char>(four[2])) << 8 |
           static_cast<file_type>(static_cast<unsigned char>(four[3]));
}

// Room for a file name with its null, wherever the host fills one in.
constexpr std::size_t HOST_NAME_SIZE = 4096;

// Results of the file service. Others are possible; 0 alone is success.
enum : host_err {
    HOST_OK = 0,
    HOST_ERR_FULL = -34,       // no space left
    HOST_ERR_IO = -36,         // reading or writing failed
    HOST_ERR_NAME = -37,       // not a possible name
    HOST_ERR_NOT_FOUND = -43,  // no such file or folder
    HOST_ERR_BUSY = -47,       // a directory, or otherwise not to be opened as a file
    HOST_ERR_EXISTS = -48,     // a file of that name exists
    HOST_ERR_PERMISSION = -54, // not allowed
    HOST_ERR_MEMORY = -108,    // no memory
    HOST_ERR_FORMAT = -199,    // the content is not what it should be
    HOST_CANCELLED = 1         // the user cancelled a dialog
};

struct host_file;

// Finds a file of one of the types in the search path: fills *path with the folder's identifier and *type with the
// file's type. [main]
host_err host_file_locate(const char* name, std::int16_t* path, file_type* type,
                          std::span<const file_type> types);

// Opens an existing file for reading. [main]
host_err host_file_open(const char* name, std::int16_t path, host_file** file);

// Creates a file with a type for writing, to replace any of that name. What is written lies beside the target until
// host_file_close, which puts it in place when every write succeeded; otherwise the old file stands and the console
// says why. [main]
host_err host_file_create(const char* name, std::int16_t path, file_type type, host_file** file);

// Reads or writes up to *count bytes at the file's position and sets *count to how many it were; fewer bytes at the end
// of a file are no error. [main]
host_err host_file_read(host_file* file, std::int32_t* count, void* into);
host_err host_file_write(host_file* file, std::int32_t* count, const void* from);

// The position in bytes from the file's start. [main]
host_err host_file_getpos(host_file* file, std::int32_t* position);
host_err host_file_setpos(host_file* file, std::int32_t position);

// Closes and frees the file record. Reports a created file that could not be put in place. [main]
host_err host_file_close(host_file* file);

// Asks the user for a file to open, of one of the types. Fills name (HOST_NAME_SIZE), path and type. HOST_CANCELLED
// when the user cancels, and when the chosen file is of another type or of none, which the host has said then. [main]
host_err host_open_dialog(char* name, std::int16_t* path, file_type* type, std::span<const file_type> types);

// Asks where to save; `name` comes in as the proposal and goes out as the choice, `type` goes out as the chosen one of
// `types`, the first being the proposal. HOST_CANCELLED when the user cancels. [main]
host_err host_saveas_dialog(char* name, std::int16_t* path, file_type* type,
                            std::span<const file_type> types);

// The identifier of the folder that names without a folder are taken in. [main]
std::int16_t host_default_path();

// ---------------------------------------------------------------------------------------------------------------------
// Memory

// A small block; `size` is given again when it is freed. Never a system allocation at scheduler level once warm. A
// block freed at scheduler level is not handed out again before the main-level call that runs has ended. Null only when
// the host's limit is reached. [both]
void* host_getbytes(std::size_t size);
void host_freebytes(void* block, std::size_t size);

// A relocatable block of `size` zero bytes, for DisposeHandle; null when there is no memory. Changes its size. [main]
Handle host_newhandle(std::size_t size);
bool host_growhandle(Handle h, std::size_t size);

// A fixed block of any size; null when there is no memory. [main]
void* host_newptr(std::size_t size);
void host_freeptr(void* block);

// Copies `size` bytes. [both]
void host_copyptr(const void* from, void* to, std::size_t size);

// Copies a null-terminated text as a length byte and at most 255 characters of the toolbox's; `to` has room for 256. The
// host's texts are UTF-8: a character that the toolbox's font has not becomes "?", a byte that is no UTF-8 is taken as the
// Latin-1 character of its number. [both]
void host_ctopcpy(unsigned char* to, const char* from);

// Copies one of the class's own resources into the host's, so that menus and dialogs find it. [main]
void host_rescopy(file_type type, std::int16_t id);

// ---------------------------------------------------------------------------------------------------------------------
// Editor windows and the number field

// An editor window. The object reads every member; it writes save_format, and the scroll values alone when it empties
// its sequence (at either level: the bars follow at the next host_window_setscrollmax).
struct host_window {
    host_object* owner = nullptr;    // whose "update", "click", … are sent
    GrafPtr port = nullptr;          // the window's port; lives as long as the window
    ControlHandle vscroll = nullptr; // the vertical scroll bar, counts pixels
    ControlHandle hscroll = nullptr; // the horizontal one, counts steps of 16 pixels
    std::int16_t width = 0;          // of the content, in pixels
    std::int16_t height = 0;
    cell<std::int16_t> hscroll_value = 0; // current scroll values; the host holds those it sets at 0 or more
    cell<std::int16_t> vscroll_value = 0;
    std::int16_t hscroll_max = 0;
    std::int16_t vscroll_max = 0;
    std::uint8_t save_format = 0; // 1: the object's document is to be written in its binary form
    cell<bool> visible = false;
};

// A window of this content rectangle, invisible, with the host's flag word. Freed by host_window_free. [main]
host_window* host_window_new(host_object* owner, std::int16_t left, std::int16_t top, std::int16_t right,
                             std::int16_t bottom, std::int32_t flags);
void host_window_free(host_window* w);

// Two settings of a window that the host keeps with it: its least content width and height in pixels. [main]
void host_window_setmin(host_window* w, std::int16_t width, std::int16_t height);

// Shows the window, which then gets an "update"; hides it. [main]
void host_window_vis(host_window* w);
void host_window_invis(host_window* w);

void host_window_settitle(host_window* w, const char* title); // copied. [main]

// Makes the window's port current. Gives the port that was current before, to be handed to SetPort afterwards; null, and
// nothing changed, while the window is hidden. [main]
GrafPtr host_window_setport(host_window* w);

// Sets both scroll bars' maxima (one below 0 counts as 0) and their thumbs to the window's scroll values. [main]
void host_window_setscrollmax(host_window* w, std::int16_t h, std::int16_t v);

// Sets both scroll values and moves the bars' thumbs; a value below 0 counts as 0. Draws nothing of the content. [main]
void host_window_setscrollval(host_window* w, std::int16_t h, std::int16_t v);

namespace host_detail {
void window_drag(host_window* w, void (*routine)(host_object*, Point, bool));
}

// From a press on: Routine(owner, point, stilldown) is called with stilldown true for every move of the pointer while the
// window is shown, and once with false when the button goes up, also when the window was hidden meanwhile; not any more
// when it was freed. Ends any drag that runs. Returns at once. [main]
template <auto Routine> void host_window_drag(host_window* w) {
    using T = typename host_detail::handler_traits<decltype(Routine)>::instance;
    host_detail::window_drag(
        w, [](host_object* x, Point p, bool stilldown) { Routine(static_cast<T*>(x), p, stilldown); });
}

// The host takes the pointer's picture back: its own arrow. [main]
void host_window_setcursor(host_window* w);

// The toolbox's name for the window: its port, as InvalWindowRect and FindControl want it. [main]
GrafPtr host_window_systemwindow(host_window* w);

// A number that the user changes by dragging it: a rectangle, a range, a value. The object fills the members.
struct host_numfield {
    host_object* owner = nullptr;
    Rect rect{};
    std::int32_t min = 0;
    std::int32_t max = 0;
    std::int32_t value = 0;
    void (*text)(std::int32_t value, char* out) = nullptr; // writes the value's text, at most 63 characters
};

namespace host_detail {
void numfield_track(host_numfield* n, int (*track)(host_object*, std::int32_t));
}

// A number field that writes its value with `text`. Freed by host_numfield_free. [main]
host_numfield* host_numfield_new(host_object* owner, void (*text)(std::int32_t value, char* out));
void host_numfield_free(host_numfield* n);

// Draws the value in the field's rectangle in the current port. [main]
void host_numfield_draw(host_numfield* n);

// Lets the host drag the value from a press on, calling Track(owner, value) for each value that differs from the last
// one told, held in the field's range; draws the field as it goes. May return before the button is up. [main]
template <auto Track> void host_numfield_track(host_numfield* n) {
    using T = typename host_detail::handler_traits<decltype(Track)>::instance;
    host_detail::numfield_track(
        n, [](host_object* x, std::int32_t value) -> int { return Track(static_cast<T*>(x), value); });
}

// Makes the colour of a host palette index, 0 to 47, the port's foreground when `set` is 1. Others count as 1. [main]
void host_forecolor(int index, int set);

// Moves the pointer to a point of the screen. [main]
void host_movecursor(Point global);
