// Reads .notes files line by line: what a line means is told by its first word, a number begins a bar.
// Developer tool that makes the example files; no part of the program.
// Called by make_examples and by the tests.
#include "examples/src/notes_reader.h"

#include "examples/src/performance.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <string_view>

namespace examples {

namespace {

constexpr int LAST_BAR = 9999;
constexpr int ACCENT = 10; // velocity that ^ adds

using words = std::vector<std::string>;

struct level_mark {
    int at = 0;
    int velocity = 0;
};

// How the notes of one voice are played. Ends with the voice.
struct shaping {
    std::vector<level_mark> levels; // empty: those of the piece
    std::map<int, int> accents;     // beat from 1: velocity added
    int off_beat = 0;               // velocity added between beats
    int balance = 0;                // velocity added to every note
    int hold = 95;                  // percent of the written length that sounds
    std::map<int, int> hold_of;     // written length in ticks: percent for notes of just that length
};

struct reader {
    std::filesystem::path folder;
    piece result;
    std::vector<level_mark> levels; // of the piece
    std::optional<performance> played;

    // The voice that is being read.
    shaping style;
    int next_bar = 1;
    int length = 0; // the last one written, taken by notes that give none
    std::optional<written> tie;
    int tie_start = 0;
};

// ---- words ----

const std::string& argument(const words& line, size_t index) {
    if (index >= line.size()) throw notes_error("\"" + line[0] + "\" needs more");
    return line[index];
}

int number(const words& line, size_t index, int least, int most) {
    return read_number(argument(line, index), least, most);
}

std::string rest_of_line(const std::string& line, const std::string& first) {
    const size_t start = line.find_first_not_of(" \t", line.find(first) + first.size());
    if (start == std::string::npos) throw notes_error("\"" + first + "\" needs more");
    return line.substr(start, line.find_last_not_of(" \t\r") + 1 - start);
}

int beat_ticks(const reader& r) {
    return bar_ticks(r.result) / r.result.beats;
}

// BAR:BEAT, both from 1; a beat may have a decimal fraction.
int position(const reader& r, const std::string& word) {
    const size_t colon = word.find(':');
    if (colon == std::string::npos) throw notes_error("\"" + word + "\" is no BAR:BEAT");
    const std::string_view beat = std::string_view(word).substr(colon + 1);
    const size_t point = beat.find('.');
    int ticks = (read_number(word.substr(0, colon), 1, LAST_BAR) - 1) * bar_ticks(r.result);
    ticks += (read_number(beat.substr(0, point), 1, r.result.beats) - 1) * beat_ticks(r);
    if (point == std::string_view::npos) return ticks;
    const std::string_view fraction = beat.substr(point + 1);
    int scale = 10;
    for (size_t i = 1; i < fraction.size() && scale < 1000; ++i) scale *= 10;
    return ticks + read_number(fraction, 0, scale - 1) * beat_ticks(r) / scale;
}

// ---- playing ----

int level_at(const std::vector<level_mark>& levels, int at) {
    if (levels.empty()) throw notes_error("the voice has no level");
    const auto after =
        std::find_if(levels.begin(), levels.end(), [&](const level_mark& m) { return m.at > at; });
    if (after == levels.begin()) return levels.front().velocity;
    const level_mark& from = *(after - 1);
    if (after == levels.end()) return from.velocity;
    return from.velocity + (after->velocity - from.velocity) * (at - from.at) / (after->at - from.at);
}

int velocity_of(const reader& r, const written& note, int start) {
    int velocity = level_at(r.style.levels.empty() ? r.levels : r.style.levels, start) + r.style.balance;
    if (note.accented) velocity += ACCENT;
    const int in_bar = start % bar_ticks(r.result);
    const auto accent = r.style.accents.find(in_bar / beat_ticks(r) + 1);
    if (in_bar % beat_ticks(r) != 0)
        velocity += r.style.off_beat;
    else if (accent != r.style.accents.end())
        velocity += accent->second;
    return std::clamp(velocity, 1, 127);
}

int sounding_ticks(const shaping& style, const written& note) {
    if (note.full) return note.length;
    const auto special = style.hold_of.find(note.length);
    const int percent = special != style.hold_of.end() ? special->second : style.hold;
    return std::max(1, note.length * percent / 100);
}

void play(reader& r, const written& note, int start) {
    for (const int pitch : note.pitches)
        r.result.voices.back().notes.push_back(
            {start, sounding_ticks(r.style, note), pitch, velocity_of(r, note, start)});
}

// Plays `note` at `start`, or keeps it until what it is tied to has been read.
void tie_or_play(reader& r, written note, int start) {
    if (r.tie) {
        if (note.pitches != r.tie->pitches) throw notes_error("a tie leads to another pitch");
        note.length += r.tie->length;
        note.accented = r.tie->accented;
        start = r.tie_start;
        r.tie.reset();
    }
    if (note.tied) {
        r.tie = note;
        r.tie_start = start;
    } else {
        play(r, note, start);
    }
}

// ---- bars and voices ----

void read_full_bar(reader& r, const words& notes, int bar) {
    const int start = (bar - 1) * bar_ticks(r.result);
    int at = start;
    for (const std::string& word : lay_out(notes)) {
        const written note = read_written(word, r.length);
        r.length = note.length;
        tie_or_play(r, note, at);
        at += note.length;
    }
    if (at - start != bar_ticks(r.result))
        throw notes_error("bar " + std::to_string(bar) + " has " + std::to_string(at - start) +
                          " ticks, not " + std::to_string(bar_ticks(r.result)));
}

// BAR NOTES..., or BAR R or FIRST-LAST R for whole bars of rest.
void read_bars(reader& r, const words& line) {
    if (r.result.voices.empty() || r.played) throw notes_error("a bar outside a voice");
    const size_t dash = line[0].find('-');
    const int first = read_number(line[0].substr(0, dash), 1, LAST_BAR);
    const int last =
        dash == std::string::npos ? first : read_number(line[0].substr(dash + 1), first, LAST_BAR);
    if (first != r.next_bar) throw notes_error("bar " + std::to_string(r.next_bar) + " is missing");
    r.next_bar = last + 1;
    const bool rest = line.size() == 2 && line[1] == "R";
    if (rest && r.tie) throw notes_error("a tie leads to a rest");
    if (!rest && first != last) throw notes_error("only rests span several bars");
    if (!rest) read_full_bar(r, words(line.begin() + 1, line.end()), first);
}

void end_voice(reader& r) {
    if (r.result.voices.empty() || r.played) return;
    if (r.tie) throw notes_error("the voice ends with a tie");
    const int end = (r.next_bar - 1) * bar_ticks(r.result);
    if (r.result.voices.size() > 1 && end != r.result.end)
        throw notes_error("the voice has not as many bars as the one before");
    r.result.end = end;
}

void begin_voice(reader& r, const std::string& name) {
    if (r.played) throw notes_error("a performance has the voice of its score");
    if (r.result.tempi.empty()) throw notes_error("the tempo has to be known before a voice");
    end_voice(r);
    r.result.voices.push_back({});
    r.result.voices.back().name = name;
    r.style = {};
    r.next_bar = 1;
    r.length = 0;
}

// ---- the other lines ----

int key_sharps(const std::string& key) {
    static const std::map<std::string, int> SHARPS = {{"C", 0},  {"G", 1},   {"D", 2},   {"A", 3},  {"E", 4},
                                                      {"F", -1}, {"Bb", -2}, {"Eb", -3}, {"Ab", -4}};
    const auto found = SHARPS.find(key);
    if (found == SHARPS.end()) throw notes_error("unknown key \"" + key + "\"");
    return found->second;
}

void read_meter(reader& r, const std::string& word) {
    const size_t slash = word.find('/');
    if (slash == std::string::npos) throw notes_error("\"" + word + "\" is no meter");
    r.result.beats = read_number(word.substr(0, slash), 1, 16);
    r.result.beat_unit = read_number(word.substr(slash + 1), 1, 16);
    read_length(word.substr(slash + 1)); // refuses what is no note length
}

void add_tempo(reader& r, const words& line) {
    const tempo_mark mark = {position(r, argument(line, 1)), number(line, 2, 20, 300)};
    if (r.result.tempi.empty()) throw notes_error("a pace comes after the tempo");
    if (r.result.tempi.back().at >= mark.at) throw notes_error("paces have to follow in order");
    r.result.tempi.push_back(mark);
}

void add_level(reader& r, const words& line) {
    if (r.played) throw notes_error("a performance has the levels of its score");
    if (r.next_bar != 1) throw notes_error("\"level\" has to stand before the first bar");
    std::vector<level_mark>& levels = r.result.voices.empty() ? r.levels : r.style.levels;
    const level_mark mark = {position(r, argument(line, 1)), number(line, 2, 1, 127)};
    if (!levels.empty() && levels.back().at >= mark.at) throw notes_error("levels have to follow in order");
    levels.push_back(mark);
}

// title, composer, format, meter, key, tempo, pace, level: lines about the whole piece. False: none of these.
bool read_piece_line(reader& r, const words& line, const std::string& text) {
    const std::string& first = line[0];
    if (first == "title")
        r.result.title = rest_of_line(text, first);
    else if (first == "composer")
        r.result.composer = rest_of_line(text, first);
    else if (first == "format")
        r.result.format = number(line, 1, 0, 1);
    else if (first == "meter")
        read_meter(r, argument(line, 1));
    else if (first == "key")
        r.result.sharps = key_sharps(argument(line, 1));
    else if (first == "tempo")
        r.result.tempi = {{0, number(line, 1, 20, 300)}};
    else if (first == "pace")
        add_tempo(r, line);
    else if (first == "level")
        add_level(r, line);
    else
        return false;
    return true;
}

void read_hold(shaping& style, const words& line) {
    if (line.size() == 2)
        style.hold = number(line, 1, 1, 100);
    else
        style.hold_of[read_length(argument(line, 1))] = number(line, 2, 1, 100);
}

void read_accent(reader& r, const words& line) {
    const int added = number(line, 2, -100, 100);
    if (line[1] == "off")
        r.style.off_beat = added;
    else
        r.style.accents[number(line, 1, 1, r.result.beats)] = added;
}

// channel, program, hold, accent, balance: how the voice that was begun is played. False: none of these.
bool read_voice_line(reader& r, const words& line) {
    if (r.result.voices.empty()) return false;
    const std::string& first = line[0];
    voice& current = r.result.voices.back();
    if (first == "channel")
        current.channel = number(line, 1, 1, 16);
    else if (first == "program")
        current.program = number(line, 1, 0, 127);
    else if (first == "balance")
        r.style.balance = number(line, 1, -100, 100);
    else if (first == "hold")
        read_hold(r.style, line);
    else if (first == "accent")
        read_accent(r, line);
    else
        return false;
    if (r.next_bar != 1) throw notes_error("\"" + first + "\" has to stand before the first bar");
    return true;
}

// perform FILE VOICE: everything is taken from that score, but of its voices only the one, counted from 1.
void begin_performance(reader& r, const words& line) {
    if (!r.result.voices.empty()) throw notes_error("\"perform\" has to stand before everything else");
    piece score = read_notes_file(r.folder / argument(line, 1));
    const int index = number(line, 2, 1, static_cast<int>(score.voices.size()));
    score.voices = {score.voices[static_cast<size_t>(index - 1)]};
    r.result = std::move(score);
    r.played.emplace();
}

void read_row(std::vector<int>& row, const words& line) {
    for (size_t i = 1; i < line.size(); ++i) row.push_back(number(line, i, -60, 60));
}

// sway, touch, wrong, skip, late: how the performance differs from its score. False: none of these.
bool read_performance_line(reader& r, const words& line) {
    if (!r.played) return false;
    const std::string& first = line[0];
    std::vector<slip>& slips = r.played->slips;
    const auto place = [&] { return position(r, argument(line, 1)); };
    if (first == "sway")
        read_row(r.played->sway, line);
    else if (first == "touch")
        read_row(r.played->touch, line);
    else if (first == "wrong")
        slips.push_back({place(), read_pitch(argument(line, 2)), 0, 0});
    else if (first == "skip")
        slips.push_back({place(), std::nullopt, 0, 0});
    else if (first == "late")
        slips.push_back({place(), std::nullopt, number(line, 2, 1, 2000), number(line, 3, 1, 2000)});
    else
        return false;
    return true;
}

void read_line(reader& r, const std::string& text) {
    if (text.starts_with('#')) return;
    words line;
    std::istringstream in(text);
    for (std::string word; in >> word;) line.push_back(word);
    if (line.empty()) return;
    if (std::isdigit(static_cast<unsigned char>(line[0][0])))
        read_bars(r, line);
    else if (line[0] == "voice")
        begin_voice(r, rest_of_line(text, "voice"));
    else if (line[0] == "perform")
        begin_performance(r, line);
    else if (!read_piece_line(r, line, text) && !read_voice_line(r, line) && !read_performance_line(r, line))
        throw notes_error("unknown word \"" + line[0] + "\"");
}

void end_piece(reader& r) {
    end_voice(r);
    if (r.result.voices.empty()) throw notes_error("there is no voice");
    if (r.played) perform(*r.played, r.result.voices.front().notes);
}

} // namespace

piece read_notes(const std::string& text, const std::string& name, const std::filesystem::path& folder) {
    reader r;
    r.folder = folder;
    int number_of_line = 0;
    try {
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) {
            ++number_of_line;
            read_line(r, line);
        }
        end_piece(r);
    } catch (const notes_error& error) {
        throw notes_error(name + ":" + std::to_string(number_of_line) + ": " + error.what());
    }
    return r.result;
}

piece read_notes_file(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in || !text) throw notes_error(file.string() + ": cannot be read");
    return read_notes(text.str(), file.filename().string(), file.parent_path());
}

} // namespace examples
