// The rasteriser beside bare loops that touch the same pixels: what the clip, the pattern and the mode cost.
// Bench: leans on the toolbox.
// Run by hand: build/release/bench_toolbox_bench.
#include "host/toolbox/font.h"
#include "host/toolbox/toolbox_host.h"

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

namespace {

constexpr int WIDTH = 600, HEIGHT = 400, COUNT = 100000;

struct bar {
    Rect r;
    uint32_t colour;
    RGBColor wide;
    unsigned char label[4]; // a Pascal string of one to three digits
};

const std::vector<bar>& bars() {
    static const std::vector<bar> made = [] {
        std::mt19937 rng(1);
        std::vector<bar> out(COUNT);
        for (bar& b : out) {
            int h = 48 + static_cast<int>(rng() % 480), v = 62 + static_cast<int>(rng() % 280);
            SetRect(&b.r, h, v, h + 4 + static_cast<int>(rng() % 50), v + 4);
            uint32_t c = static_cast<uint32_t>(rng());
            b.wide = {static_cast<uint16_t>((c >> 16 & 255) * 257),
                      static_cast<uint16_t>((c >> 8 & 255) * 257), static_cast<uint16_t>((c & 255) * 257)};
            b.colour = 0xFF000000u | c;
            std::string text = std::to_string(rng() % 128);
            b.label[0] = static_cast<unsigned char>(text.size());
            std::copy(text.begin(), text.end(), b.label + 1);
        }
        return out;
    }();
    return made;
}

struct opened {
    GrafPtr port = toolbox_port_new(WIDTH, HEIGHT);
    opened() {
        SetPort(port);
        Rect data;
        SetRect(&data, 48, 62, WIDTH - 15, HEIGHT - 30);
        ClipRect(&data);
    }
    ~opened() { toolbox_port_free(port); }
};

void BareFill(benchmark::State& state) {
    std::vector<uint32_t> pixels(WIDTH * HEIGHT);
    for (auto _ : state) {
        for (const bar& b : bars()) {
            for (int v = b.r.top; v < b.r.bottom; v++) {
                uint32_t* row = pixels.data() + v * WIDTH;
                for (int h = b.r.left; h < b.r.right; h++) row[h] = b.colour;
            }
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}
BENCHMARK(BareFill);

void Paint(benchmark::State& state) {
    opened window;
    for (auto _ : state) {
        for (const bar& b : bars()) {
            RGBForeColor(&b.wide);
            Rect r;
            SetRect(&r, b.r.left, b.r.top, b.r.right, b.r.bottom);
            PaintRect(&r);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}
BENCHMARK(Paint);

void BareGlyphs(benchmark::State& state) {
    std::vector<uint32_t> pixels(WIDTH * HEIGHT);
    const font_strike& strike = font_get(false);
    for (auto _ : state) {
        for (const bar& b : bars()) {
            int h = b.r.left;
            for (int i = 1; i <= b.label[0]; i++) {
                const font_glyph& g = strike.glyphs[b.label[i]];
                uint32_t* row = pixels.data() + (b.r.top - 4) * WIDTH + h;
                for (uint16_t bits : g.rows) {
                    for (int column = 0; bits; column++, bits = static_cast<uint16_t>(bits << 1)) {
                        if (bits & 0x8000) row[column] = 0xFF000000u;
                    }
                    row += WIDTH;
                }
                h += g.advance;
            }
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}
BENCHMARK(BareGlyphs);

void Labels(benchmark::State& state) {
    opened window;
    for (auto _ : state) {
        for (const bar& b : bars()) {
            MoveTo(b.r.left, b.r.top + 6);
            DrawString(b.label);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}
BENCHMARK(Labels);

void Measure(benchmark::State& state) {
    opened window;
    for (auto _ : state) {
        int sum = 0;
        for (const bar& b : bars()) sum += StringWidth(b.label);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * COUNT);
}
BENCHMARK(Measure);

} // namespace
