// packaging/reference/make_reference.cpp: writes the manual page and the shells' completions, at every build, from the
// options that the program itself takes: make_reference PAGE FOLDER.
// Layer: a tool of the build.
#include <cstdio>
#include <fstream>
#include <sstream>

#include "packaging/reference/writers.h"

namespace {

bool write(const std::string& file, const std::string& text) {
    std::ofstream out(file, std::ios::binary);
    out << text;
    out.close();
    if (!out) std::fprintf(stderr, "make_reference: %s could not be written\n", file.c_str());
    return static_cast<bool>(out);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: make_reference PAGE FOLDER\n", stderr);
        return 2;
    }
    std::ifstream in(argv[1], std::ios::binary);
    std::ostringstream page;
    page << in.rdbuf();
    if (!in || !page) {
        std::fprintf(stderr, "make_reference: %s could not be read\n", argv[1]);
        return 1;
    }
    const std::string folder = argv[2];
    const program_words program = words_of_program();
    const bool written = write(folder + "/brisolan.1", manual_page(program, page.str())) &&
                         write(folder + "/brisolan.bash", bash_completion(program)) &&
                         write(folder + "/brisolan.zsh", zsh_completion(program)) &&
                         write(folder + "/brisolan.fish", fish_completion(program));
    return written ? 0 : 1;
}
