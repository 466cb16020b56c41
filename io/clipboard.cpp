// io/clipboard.cpp: cut, copy, paste and clear of the selected events, as text on the system clipboard.
// Layer: io. Called by the host's Edit menu and by the keyboard.
#include "io/clipboard.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <string_view>
#include <vector>

#include "core/lifecycle.h"
#include "core/sequence.h"
#include "view/events.h"
#include "view/scroll.h"
#include "view/selected.h"

namespace {

constexpr std::size_t LINE_LIMIT = 255; // characters of a line that are read
constexpr char LINE_END = '\r';
constexpr std::size_t NUMBER_SIZE = 12; // a 32-bit number and the character behind it
constexpr std::int32_t FIRST_CAPACITY = 1000;

bool find_clipboard(ScrapRef* scrap) {
    return GetScrapByName(kScrapClipboardScrap, 0, scrap) == noErr;
}

// Text that grows in a relocatable block, which is what the clipboard's calls take. Doubles, so that copying a large
// selection stays linear.
class text_block {
public:
    text_block() : handle(NewHandle(FIRST_CAPACITY)), capacity(handle ? FIRST_CAPACITY : 0) {}
    ~text_block() { DisposeHandle(handle); }
    text_block(const text_block&) = delete;
    text_block& operator=(const text_block&) = delete;

    // False when there is no memory for it; the text so far stays.
    bool add(std::string_view text) {
        const auto more = static_cast<std::int32_t>(text.size());
        if (more > capacity - length && !grow(std::int64_t{length} + more)) return false;
        std::copy(text.begin(), text.end(), *handle + length);
        length += more;
        return true;
    }
    void put() {
        if (!handle) return;
        HLock(handle);
        ThePutScrap(length, kScrapFlavorTypeText, *handle);
        HUnlock(handle);
    }

private:
    bool grow(std::int64_t needed) {
        const std::int64_t wanted =
            std::max(needed, std::min<std::int64_t>(capacity * std::int64_t{2}, INT32_MAX));
        if (!handle || wanted > INT32_MAX) return false;
        SetHandleSize(handle, static_cast<std::int32_t>(wanted));
        if (MemError() != noErr) return false;
        capacity = static_cast<std::int32_t>(wanted);
        return true;
    }

    Handle handle;
    std::int32_t capacity;
    std::int32_t length = 0;
};

bool add_event(text_block* text, const event& e) {
    char line[NPARAMS * NUMBER_SIZE];
    char* end = line;
    for (int i = 0; i < NPARAMS; ++i) {
        end = std::to_chars(end, line + sizeof line, event_param(e, i)).ptr;
        *end++ = i == NPARAMS - 1 ? LINE_END : ' ';
    }
    return text->add({line, static_cast<std::size_t>(end - line)});
}

// The next line of the text, taken off its front. A line that is too long ends where it reaches the limit; the character
// there is lost as if it were the line end, and what follows it is the next line.
std::string_view take_line(std::string_view* text) {
    const std::string_view reach = text->substr(0, LINE_LIMIT + 1);
    const std::size_t length = std::min({reach.find(LINE_END), reach.size(), LINE_LIMIT});
    text->remove_prefix(std::min(length + 1, text->size()));
    return reach.substr(0, length);
}

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// The digits from *at on as a number, its sign applied; *at moves behind them. A number beyond 32 bits stops at their
// limit. `negative` may become true in between: a minus sign counts for the number that it stands in or before.
std::int32_t take_number(const char** at, const char* end, bool negative) {
    constexpr std::int64_t BEYOND = std::int64_t{1} << 32;
    std::int64_t number = 0;
    for (; *at != end && (is_digit(**at) || **at == '-'); ++*at) {
        if (**at == '-')
            negative = true;
        else if (number < BEYOND)
            number = number * 10 + (**at - '0');
    }
    if (negative) number = -number;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(number, INT32_MIN, INT32_MAX));
}

// Reads at most eight numbers of a line and gives how many it were.
int parse_line(std::string_view line, std::array<std::int32_t, NPARAMS>* values) {
    int count = 0;
    bool negative = false;
    const char* const end = line.data() + line.size();
    for (const char* at = line.data(); at != end && count < NPARAMS;) {
        if (is_digit(*at)) {
            (*values)[static_cast<std::size_t>(count++)] = take_number(&at, end, negative);
            negative = false;
        } else {
            if (*at == '-') negative = true;
            ++at;
        }
    }
    return count;
}

// ---- lines as copying writes them
//
// Nearly all are, and a large paste spends most of its time in reading them: so their numbers are found by what ends them,
// for a whole line at once, and read eight digits in one word. No branch guesses how long each is.

using text_word = std::uint64_t;
constexpr std::size_t WORD = sizeof(text_word);
constexpr std::size_t MOST_PLAIN = 64; // characters of a line that is read so; fewer than LINE_LIMIT
constexpr bool WORDS_WORK = std::endian::native == std::endian::little;

constexpr text_word in_each(unsigned char c) {
    return text_word{0x0101010101010101} * c;
}

// The digits of eight characters as their values, others as something above 9.
text_word digit_values(const char* at) {
    text_word w = 0;
    std::memcpy(&w, at, WORD);
    return w ^ in_each('0');
}

// A bit for each of 32 characters, the first lowest: whether it is something else than a digit.
std::uint64_t other_than_digits(const char* at) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < MOST_PLAIN / 2; i += WORD) {
        const text_word w = digit_values(at + i);
        const text_word high = (((w & in_each(0x7F)) + in_each(0x80 - 10)) | w) & in_each(0x80);
        bits |= high * 0x0002040810204081 >> 56 << i; // brings the words' high bits together
    }
    return bits;
}

// The number that the last `size` of the eight characters in front of `end` make, 1 to 8.
std::int32_t number_before(const char* end, std::size_t size) {
    text_word w = digit_values(end - WORD) & ~text_word{0} << (8 * (WORD - size)) % 64;
    w = (w * 10 + (w >> 8)) & 0x00FF00FF00FF00FF; // in twos, fours, all
    w = (w * 100 + (w >> 16)) & 0x0000FFFF0000FFFF;
    return static_cast<std::int32_t>(w * 10000 + (w >> 32));
}

// Takes the next line off the text when it is eight numbers of 1 to 8 digits with a blank between two, and eight
// characters stand in front of it and a longest line behind; false, and nothing is taken, of any other.
bool take_plain_line(const char* begin, std::string_view* text, event* e) {
    const char* const at = text->data();
    if (!WORDS_WORK || text->size() < MOST_PLAIN || at - begin < static_cast<std::ptrdiff_t>(WORD))
        return false;
    constexpr std::uint64_t LAST = std::uint64_t{1} << (MOST_PLAIN - 1);
    std::uint64_t ends = other_than_digits(at);
    std::size_t sizes = 0; // less 1, all bits that any has
    int wrong = 0;
    std::size_t from = 0;
#pragma GCC unroll 8
    for (int i = 0; i < NPARAMS; ++i) {
        if (ends == 0) ends = other_than_digits(at + MOST_PLAIN / 2) << MOST_PLAIN / 2 | LAST;
        const auto end = static_cast<std::size_t>(std::countr_zero(ends));
        ends &= ends - 1;
        sizes |= end - from - 1;
        wrong |= at[end] ^ (i == NPARAMS - 1 ? LINE_END : ' ');
        event_param(*e, i) = number_before(at + end, end - from);
        from = end + 1;
    }
    if (wrong != 0 || sizes >= WORD) return false;
    text->remove_prefix(from);
    return true;
}

// Fills an event with the next line, which is taken off the text.
void take_event(const brisolan* x, const char* begin, std::string_view* text, event* e) {
    if (take_plain_line(begin, text, e)) return;
    std::array<std::int32_t, NPARAMS> values;
    const int count = parse_line(take_line(text), &values);
    for (int i = 0; i < NPARAMS; ++i) {
        const auto at = static_cast<std::size_t>(i);
        event_param(*e, i) = i < count ? values[at] : x->params[at].defvalue.get();
    }
}

// Puts the selected events' text on the clipboard; false, and the clipboard stays, when there is no memory for it.
bool copy_selected(const brisolan* x) {
    text_block text;
    for (const event* e : brisolan_each(x)) {
        if (e->selected && !add_event(&text, *e)) return false;
    }
    TheZeroScrap();
    text.put();
    return true;
}

// One event for each line, in the order of the lines, as a chain that is in no list yet; ends early when there is no
// memory.
std::vector<event*> events_from(const brisolan* x, std::string_view text) {
    constexpr std::size_t SHORT_LINE = 16; // characters, of eight numbers
    const char* const begin = text.data();
    std::vector<event*> pasted;
    pasted.reserve(text.size() / SHORT_LINE);
    while (!text.empty()) {
        event* e = brisolan_newevent();
        if (!e) break;
        take_event(x, begin, &text, e);
        if (!pasted.empty()) pasted.back()->next = e;
        pasted.push_back(e);
    }
    return pasted;
}

void paste_text(brisolan* x, std::string_view text) {
    const std::vector<event*> pasted = events_from(x, text);
    if (pasted.empty()) return;
    brisolan_linkchain(x, pasted.front());
    event_pen pen(x, static_cast<std::int32_t>(pasted.size()));
    for (event* e : pasted) brisolan_select(x, &pen, e); // which draws it
}

} // namespace

std::int32_t TheGetScrap(Handle handle, FlavorType flavor, OSErr* error) {
    ScrapRef scrap = nullptr;
    FlavorFlags flags = 0;
    std::int32_t size = 0;
    if (!find_clipboard(&scrap)) return 0;
    if (GetScrapFlavorFlags(scrap, flavor, &flags) != noErr) return 0;
    if (GetScrapFlavorSize(scrap, flavor, &size) != noErr || size < 0) return 0;
    if (!handle) return size;
    SetHandleSize(handle, size);
    if (MemError() != noErr) return 0;
    *error = noErr;
    HLock(handle);
    std::int32_t held = size; // more where another program has put a longer text there meanwhile
    const OSStatus got = GetScrapFlavorData(scrap, flavor, &held, *handle);
    HUnlock(handle);
    return got == noErr ? std::min(held, size) : 0;
}

void ThePutScrap(std::int32_t length, FlavorType flavor, const void* data) {
    ScrapRef scrap = nullptr;
    if (find_clipboard(&scrap)) PutScrapFlavor(scrap, flavor, kScrapFlavorMaskNone, length, data);
}

void TheZeroScrap() {
    ScrapRef scrap = nullptr;
    if (find_clipboard(&scrap)) ClearScrap(&scrap);
}

void brisolan_copy(brisolan* x) {
    copy_selected(x);
}

void brisolan_cut(brisolan* x) {
    if (copy_selected(x)) brisolan_clr(x);
}

void brisolan_paste(brisolan* x) {
    brisolan_noselect(x);
    const Handle text = NewHandle(0);
    if (!text) return;
    OSErr error = noErr;
    const std::int32_t size = TheGetScrap(text, kScrapFlavorTypeText, &error);
    if (size > 0) {
        HLock(text);
        paste_text(x, {*text, static_cast<std::size_t>(size)});
        HUnlock(text);
        brisolan_remax(x);
        brisolan_dirty(x);
    }
    DisposeHandle(text);
}

// Kept: neither `nselected` nor the legend is touched, so that until everything is deselected once the counter still has
// the deleted events.
void brisolan_clr(brisolan* x) {
    {
        event_pen pen(x, x->nselected);
        for (event* e : brisolan_each(x)) {
            if (e->selected) pen.erase(e);
        }
    }
    brisolan_removeselected(x);
    brisolan_remax(x);
    brisolan_dirty(x);
}

void brisolan_chkmenu(brisolan* x, host_menustate* state) {
    state->paste = TheGetScrap(nullptr, kScrapFlavorTypeText, nullptr) > 0;
    if (brisolan_firstselected(x)) state->cut = 1;
    state->selectall = 1;
}
