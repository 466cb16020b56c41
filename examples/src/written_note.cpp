// The words of a .notes line. Each take_ routine takes something off the front of a word and leaves what follows.
// Developer tool that makes the example files; no part of the program.
// Called by notes_reader.
#include "examples/src/written_note.h"

#include "examples/src/piece.h"

#include <cctype>
#include <charconv>

namespace examples {

constexpr int WHOLE_NOTE = 4 * TICKS_PER_QUARTER;
constexpr int SHORTEST_PART = 32; // of a whole note
constexpr int SMALL_C = 48;       // the note number of c

static std::string quoted(std::string_view word) {
    return "\"" + std::string(word) + "\"";
}

int read_number(std::string_view word, int least, int most) {
    int value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() || value < least || value > most)
        throw notes_error(quoted(word) + " is no number from " + std::to_string(least) + " to " +
                          std::to_string(most));
    return value;
}

// 0 if the word does not begin with a length.
static int take_length(std::string_view& word) {
    size_t digits = 0;
    while (digits < word.size() && std::isdigit(static_cast<unsigned char>(word[digits]))) ++digits;
    if (digits == 0) return 0;
    const int part = read_number(word.substr(0, digits), 1, SHORTEST_PART);
    if ((part & (part - 1)) != 0) throw notes_error("there is no note length " + std::to_string(part));
    word.remove_prefix(digits);
    if (!word.starts_with('.')) return WHOLE_NOTE / part;
    word.remove_prefix(1);
    return WHOLE_NOTE / part * 3 / 2;
}

static int take_pitch(std::string_view& word) {
    static constexpr int STEPS[] = {9, 11, 0, 2, 4, 5, 7}; // a to g, in semitones above C
    const std::string_view whole = word;
    if (word.empty() || word[0] < 'a' || word[0] > 'g') throw notes_error(quoted(whole) + " is no note");
    int pitch = SMALL_C + STEPS[word[0] - 'a'];
    word.remove_prefix(1);
    if (word.starts_with('#') || word.starts_with('b')) {
        pitch += word[0] == '#' ? 1 : -1;
        word.remove_prefix(1);
    }
    for (; word.starts_with('\'') || word.starts_with(','); word.remove_prefix(1))
        pitch += word[0] == '\'' ? 12 : -12;
    if (pitch < 0 || pitch > 127) throw notes_error(quoted(whole) + " is out of range");
    return pitch;
}

static std::vector<int> take_pitches(std::string_view& word) {
    if (!word.starts_with('<')) return {take_pitch(word)};
    word.remove_prefix(1);
    std::vector<int> pitches;
    while (!word.starts_with('>')) {
        pitches.push_back(take_pitch(word));
        while (word.starts_with(' ')) word.remove_prefix(1);
    }
    word.remove_prefix(1);
    if (pitches.size() != 2) throw notes_error("a chord has two notes, in every voice");
    return pitches;
}

int read_length(std::string_view word) {
    const std::string_view whole = word;
    const int length = take_length(word);
    if (length == 0 || !word.empty()) throw notes_error(quoted(whole) + " is no note length");
    return length;
}

int read_pitch(std::string_view word) {
    const std::string_view whole = word;
    const int pitch = take_pitch(word);
    if (!word.empty()) throw notes_error(quoted(whole) + " is no pitch");
    return pitch;
}

written read_written(std::string_view word, int last_length) {
    const std::string_view whole = word;
    written note;
    if (word.starts_with('r'))
        word.remove_prefix(1);
    else
        note.pitches = take_pitches(word);
    const int length = take_length(word);
    note.length = length > 0 ? length : last_length;
    if (note.length == 0) throw notes_error("the first note of a voice needs a length");
    for (; !word.empty(); word.remove_prefix(1)) {
        if (word[0] == '^')
            note.accented = true;
        else if (word[0] == '_')
            note.full = true;
        else if (word[0] == '~' && note.pitches.size() == 1)
            note.tied = true;
        else
            throw notes_error(quoted(whole) + " is no note");
    }
    return note;
}

std::vector<std::string> lay_out(const std::vector<std::string>& line) {
    std::vector<std::string> notes;
    for (size_t i = 0; i < line.size(); ++i) {
        std::string word = line[i];
        while (word[0] == '<' && word.find('>') == std::string::npos) {
            if (++i == line.size()) throw notes_error("a chord does not end");
            word += " " + line[i];
        }
        if (word[0] != '*') {
            notes.push_back(word);
            continue;
        }
        const std::vector<std::string> once = notes;
        const int times = read_number(std::string_view(word).substr(1), 2, 16);
        for (int n = 1; n < times; ++n) notes.insert(notes.end(), once.begin(), once.end());
    }
    return notes;
}

} // namespace examples
