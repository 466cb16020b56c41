// Rectangles and points: arithmetic alone.
// Toolbox: implements the first group of host/toolbox.h.
// Called by everyone.
#include "host/toolbox.h"

#include "host/toolbox/pin.h"

#include <algorithm>

void SetRect(Rect* r, int left, int top, int right, int bottom) {
    *r = {pin16(left), pin16(top), pin16(right), pin16(bottom)};
}

void OffsetRect(Rect* r, int dh, int dv) {
    int64_t h = dh, v = dv;
    *r = {pin16(r->left + h), pin16(r->top + v), pin16(r->right + h), pin16(r->bottom + v)};
}

void InsetRect(Rect* r, int dh, int dv) {
    int64_t h = dh, v = dv;
    Rect in{pin16(r->left + h), pin16(r->top + v), pin16(r->right - h), pin16(r->bottom - v)};
    *r = in.right < in.left || in.bottom < in.top ? Rect{0, 0, 0, 0} : in;
}

bool PtInRect(Point pt, const Rect* r) {
    return pt.h >= r->left && pt.h < r->right && pt.v >= r->top && pt.v < r->bottom;
}

bool EmptyRect(const Rect* r) {
    return r->right <= r->left || r->bottom <= r->top;
}

bool SectRect(const Rect* a, const Rect* b, Rect* dst) {
    Rect s{std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
           std::min(a->bottom, b->bottom)};
    bool some = !EmptyRect(&s);
    *dst = some ? s : Rect{0, 0, 0, 0};
    return some;
}

void UnionRect(const Rect* a, const Rect* b, Rect* dst) {
    if (EmptyRect(a)) {
        *dst = *b;
    } else if (EmptyRect(b)) {
        *dst = *a;
    } else {
        *dst = {std::min(a->left, b->left), std::min(a->top, b->top), std::max(a->right, b->right),
                std::max(a->bottom, b->bottom)};
    }
}

bool EqualRect(const Rect* a, const Rect* b) {
    return a->left == b->left && a->top == b->top && a->right == b->right && a->bottom == b->bottom;
}

void SetPt(Point* pt, int h, int v) {
    *pt = {pin16(v), pin16(h)};
}

bool EqualPt(Point a, Point b) {
    return a.h == b.h && a.v == b.v;
}
