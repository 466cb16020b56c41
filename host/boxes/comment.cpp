// host/boxes/comment.cpp: `comment words…`: a text for whoever reads the patch; it does nothing.
// Layer: host.
#include "host/boxes/boxes.h"
#include "host/kel.h"

namespace {

struct comment : host_object {};

host_class* comment_class = nullptr;

comment* comment_new(std::int32_t, const atom*) {
    return host_object_new<comment>(comment_class);
}

void comment_free(comment*) {}

} // namespace

void comment_setup() {
    comment_class = host_class_setup("comment", host_typed_lifecycle<comment_new, comment_free, ARG_LIST>());
}
