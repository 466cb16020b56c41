// app/saved_roles.h: a document's display roles as they were when it was saved.
// Layer: program. Called by the editor's documents.
#pragma once

#include <string>

#include "core/instance.h"

// The object lowers each display role by one whenever it reads a document, and gives the axes away on the way. A person
// who opens what he saved expects it to look as it did: gives the instance, which has read the document, the roles that the
// document's lines tell. Nothing where these lines are not all there. [main]
void show_saved_roles(brisolan* x, const std::string& file);
