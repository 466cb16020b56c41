// app/say.h: the program's lines: what a command prints, and what it tells on standard error.
// Layer: program. Called by the commands and main.cpp.
#pragma once

#include <string>
#include <string_view>

// "brisolan: WHAT" on standard error, one line whatever names are in it. [main]
void say(const std::string& what);

// The same of a console line, "post …" or "error …", without that word. [main]
void say_console(const std::string& line);

// The same of what ends a command; its exit status. [main]
int fail(const std::string& why);
int misuse(const std::string& why);

// Prints a text as it is; one line. [main]
void print_text(std::string_view text);
void print_line(const std::string& line);

// Sends what was printed on its way. False when standard output takes no more, now or before. [main]
bool flush_output();

// Tells, where nothing else has told, that standard output did not take everything; the exit status, which is then no
// success. For the end of a command whose status would be `status`. [main]
int finish_output(int status);

// Gives standard streams that were closed a file that refuses what they are for, so that no file opened later is taken
// for one of them. Before anything else. [main]
void keep_standard_streams();
