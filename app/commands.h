// app/commands.h: the program's commands, one file each.
// Layer: program. Called by main.cpp and by the maker of the manual page and the shells' completions.
#pragma once

#include <cstdint>

#include <CLI/CLI.hpp>

// Exit statuses of every command.
constexpr int EXIT_DONE = 0;
constexpr int EXIT_FAILED = 1; // the work failed; standard error says why
constexpr int EXIT_MISUSE = 2; // the command line, or a script's line, was not understood

// What whole numbers are checked by. The library's own checks of this kind answer a wrong one with a bound of three hundred
// digits. So many milliseconds are thirty years, and still a time in nanoseconds.
constexpr std::int64_t MOST_WHOLE = 1'000'000'000'000;
constexpr std::int64_t MOST_INT = INT32_MAX; // what an event can hold
inline const CLI::Range WHOLE_FROM_0(std::int64_t{0}, MOST_WHOLE, "NONNEGATIVE");
inline const CLI::Range WHOLE_FROM_1(std::int64_t{1}, MOST_WHOLE, "POSITIVE");
inline const CLI::Range INT_FROM_0(std::int64_t{0}, MOST_INT, "NONNEGATIVE");
inline const CLI::Range INT_FROM_1(std::int64_t{1}, MOST_INT, "POSITIVE");

// Each adds its command with its options; the chosen one's callback stores the exit status. [main]
void add_edit_command(CLI::App& program, int& status);
void add_list_command(CLI::App& program, int& status);
void add_convert_command(CLI::App& program, int& status);
void add_render_command(CLI::App& program, int& status);
void add_ports_command(CLI::App& program, int& status);
void add_script_command(CLI::App& program, int& status);
void add_play_command(CLI::App& program, int& status);
void add_follow_command(CLI::App& program, int& status);
void add_patch_command(CLI::App& program, int& status);
void add_record_command(CLI::App& program, int& status);

// Gives the program its flags and all of its commands. [main]
void set_up_command_line(CLI::App& program, int& status);
