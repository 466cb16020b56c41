// How somebody plays a voice: a little off the grid, with slips.
// Developer tool that makes the example files; no part of the program.
// Called by notes_reader when a source says "perform".
#include "examples/src/performance.h"

#include "examples/src/written_note.h"

#include <algorithm>

namespace examples {

static void loosen(const performance& how, std::vector<note>& notes) {
    for (size_t i = 0; i < notes.size(); ++i) {
        note& n = notes[i];
        if (!how.sway.empty()) n.start = std::max(0, n.start + how.sway[i % how.sway.size()]);
        if (!how.touch.empty()) n.velocity = std::clamp(n.velocity + how.touch[i % how.touch.size()], 1, 127);
    }
    for (size_t i = 0; i + 1 < notes.size(); ++i)
        notes[i].length = std::min(notes[i].length, std::max(1, notes[i + 1].start - notes[i].start));
}

static size_t index_at(const std::vector<note>& score, int at) {
    const auto found = std::find_if(score.begin(), score.end(), [&](const note& n) { return n.start == at; });
    if (found == score.end()) throw notes_error("no note stands where the performance wants to change one");
    return static_cast<size_t>(found - score.begin());
}

void perform(const performance& how, std::vector<note>& notes) {
    const std::vector<note> score = notes;
    loosen(how, notes);
    for (const slip& change : how.slips) {
        note& played = notes[index_at(score, change.at)];
        if (change.pitch)
            played.pitch = *change.pitch;
        else
            played.length = change.length; // 0 for a note that is left out
        played.start += change.late;
    }
    std::erase_if(notes, [](const note& n) { return n.length == 0; });
    std::stable_sort(notes.begin(), notes.end(),
                     [](const note& a, const note& b) { return a.start < b.start; });
}

} // namespace examples
