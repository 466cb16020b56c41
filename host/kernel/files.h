// host/kernel/files.h: what the file service offers beyond the object interface: folders, types, faults for tests.
// Layer: kernel. Called by platforms, the command line, the atom buffers and tests. Done in files.cpp, of types in filetypes.cpp, of
// reasons and faults in systemcalls.cpp.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/kel.h"

// The types that the object reads and writes.
constexpr file_type TYPE_MIDI = host_type("Midi");
constexpr file_type TYPE_TEXT = host_type("TEXT");
constexpr file_type TYPE_KELB = host_type("kelb");

// The folders that host_file_locate looks through, in order, after the current directory. Replaces those set before.
// [main]
void kel_setsearchpath(const std::vector<std::string>& folders);

// The path identifier of a folder; the same one whenever it is asked for again. 0, the current directory, for the empty
// string and when there are no identifiers left. [main]
std::int16_t kel_folder(const std::string& folder);

// Where a name in a folder lies on disk. A name that begins with a slash stands for itself; an unknown identifier is
// the current directory. [main]
std::string kel_filepath(const char* name, std::int16_t path);

// A file's type: the one it was created with where the file system kept it, else the one its name's ending tells;
// 0 for none. The file need not exist. [main]
file_type kel_filetype(const std::string& file);

// The type that a name's ending tells; 0 for none. [both]
file_type kel_typeofname(const char* name);

// One phrase for a code of the file service, such as "no space left". Static. [both]
const char* kel_filereason(host_err code);

// Who may have files made or replaced by name. At first, and after each start of the host, everyone: what is sent comes
// from the person. A program that loads what others made protects first: host_file_create then refuses, with
// HOST_ERR_PERMISSION and a console line, all but what a person named, that is what kel_file_allow was told of and what
// a save dialog gave. [main]
void kel_files_protect(bool on);

// Allows one file, by the place that its name stands for now, or a folder with all below it. [main]
void kel_file_allow(const std::string& file);

// The end of a created file for a program that speaks for itself: as host_file_close, but a failure is only returned,
// not said on the console. [main]
host_err kel_file_finish(host_file* f);

// Closes and frees the record of a created file that is not wanted after all: the target stays as it was. [main]
void kel_file_discard(host_file* f);

// For tests: the k-th operation from now on, counted from 1, fails with `code`; 0 ends that. Each host_file_… call and
// each call of the system inside it is one operation. kel_file_faulted tells whether the failure has happened. [main]
void kel_file_fault(int k, host_err code = HOST_ERR_IO);
bool kel_file_faulted();
