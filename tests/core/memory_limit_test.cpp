// tests/core/memory_limit_test.cpp: where the host has no memory left, what is there goes on.
// Test layer.
#include <string>

#include "core/check.h"
#include "core/heldnotes.h"
#include "core/messages.h"
#include "core/output.h"
#include "core/sequence.h"
#include "tests/support/host_test.h"
#include "tests/support/used_up.h"

namespace {

class memory_limit : public object_test {
protected:
    // "pitch:dur" of every event.
    std::string notes() const {
        std::string text;
        for (const event* e = x->events; e; e = e->next)
            text += std::to_string(e->pitch) + ":" + std::to_string(e->dur) + " ";
        return text;
    }
    std::size_t candidates() const {
        std::size_t n = 0;
        for (const event_node* at = x->follow_pending; at; at = at->next) ++n;
        return n;
    }
};

TEST_F(memory_limit, a_note_that_cannot_be_held_is_recorded_and_keeps_its_provisional_duration) {
    send("record");
    brisolan_freeevent(brisolan_newevent()); // for the event itself there is a block
    {
        const used_up nodes(sizeof(event_node));
        send("0 60 64 300");
        EXPECT_EQ(brisolan_brokeninvariant(x), nullptr);
    }
    EXPECT_EQ(x->held, nullptr);
    send("50 60 0");
    send("0 62 64 300");
    send("50 62 0");
    EXPECT_EQ(notes(), "60:300 62:50 ");
}

TEST_F(memory_limit, notes_passed_over_while_following_are_no_candidates_then) {
    send("record");
    for (const char* note : {"0 60 64 300", "10 62 64 300", "10 64 64 300"}) send(note);
    send("follow");
    {
        const used_up nodes(sizeof(event_node));
        send("0 64 80");
    }
    EXPECT_EQ(candidates(), 0U);
    EXPECT_EQ(x->current, nullptr);
    EXPECT_EQ(x->mode, MODE_FOLLOW);
    EXPECT_EQ(brisolan_brokeninvariant(x), nullptr);
}

TEST_F(memory_limit, a_mute_that_cannot_be_kept_mutes_nothing) {
    send("mute 1 60 1");
    {
        const used_up entries(sizeof(mute_entry));
        send("mute 1 62 1");
    }
    event sixty{{}, 0, 60, 64, 300, 1, 1, 0, 0};
    event sixty_two{{}, 0, 62, 64, 300, 1, 1, 0, 0};
    EXPECT_TRUE(brisolan_mutethis(x, &sixty));
    EXPECT_FALSE(brisolan_mutethis(x, &sixty_two));
}

} // namespace
