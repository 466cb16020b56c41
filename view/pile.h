// view/pile.h: records piled up one after the other, of which emptying keeps the storage.
// Layer: view, internal to the data area.
// Called by whatever walks over many events and writes a record for each: what a vector's own growing costs is more than
// all else that such a walk does.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

template <class T> class pile {
public:
    void clear() { count = 0; }
    // A new record, to be filled in where it lies: its fields are those of an earlier one. Valid until the next push.
    T& push() {
        if (count == all.size()) grow();
        return all[count++];
    }
    void push(const T& record) { push() = record; }
    void pop() { --count; }
    std::size_t size() const { return count; }
    bool empty() const { return count == 0; }
    T& operator[](std::size_t i) { return all[i]; }
    const T& operator[](std::size_t i) const { return all[i]; }
    T& back() { return all[count - 1]; }
    void swap(pile& other) {
        all.swap(other.all);
        std::swap(count, other.count);
    }
    const T* begin() const { return all.data(); }
    const T* end() const { return all.data() + count; }

private:
    [[gnu::noinline]] void grow() { all.resize(std::max<std::size_t>(2 * all.size(), 1024)); }
    std::vector<T> all; // `count` of it are in use
    std::size_t count = 0;
};
