// Lays out Dunvale run files, right or wrong, from words, independently of the code under test.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>

namespace korlit::test {

template <typename Number>
std::string little(Number number) {
    std::string bytes(sizeof number, '\0');
    std::memcpy(bytes.data(), &number, sizeof number);
    return bytes;
}

/// The bytes of words with a blank between each two: 12 is an integer of 4 bytes, 12s one of
/// 2, 1.5f a float, 1.5d a double, x40A00000 a float by its bits, 'text':30 a text (a _ for each
/// blank) in a field of 30 bytes and r20 a reserved range, filled with what is neither zero nor a
/// number.
inline std::string layOutRun(const std::string& words) {
    std::istringstream in{words};
    std::string bytes;
    for (std::string word; in >> word;) {
        const std::string tail = word.substr(1);
        if (word.front() == '\'') {
            std::string text = word.substr(1, word.rfind('\'') - 1);
            std::replace(text.begin(), text.end(), '_', ' ');
            text.resize(std::stoul(word.substr(word.rfind(':') + 1)));
            bytes += text;
        } else if (word.front() == 'r') {
            bytes += std::string(std::stoul(tail), '\xEE');
        } else if (word.front() == 'x') {
            bytes += little(static_cast<std::uint32_t>(std::stoul(tail, nullptr, 16)));
        } else if (word.back() == 'f') {
            bytes += little(std::stof(word));
        } else if (word.back() == 'd') {
            bytes += little(std::stod(word));
        } else if (word.back() == 's') {
            bytes += little(static_cast<std::int16_t>(std::stoi(word)));
        } else {
            bytes += little(static_cast<std::int32_t>(std::stoll(word)));
        }
    }
    return bytes;
}

/// The blocks of a run in words: six points half a minute apart with two peaks, of version 5.02007,
/// if nothing is changed. The blocks of a channel are there `channels` times.
struct RunText {
    std::string version = "x40A0A46A";
    std::string info = "r104 'A._Chemist':64 38637.5d r20 3s 14s r4 'Sample_1':30 r2";
    std::string count = "1s";
    std::string signal = "r52 6 30000s 2d 'mAU':20 r16 1f 6f 1f 2f 6f 4f 5f 3f";
    std::string results = "0s 2s 5s 0.5f 0f 1f 120f 6f 1.5f 1.5f 1f 2.5f 60f 5f 2.5f";
    std::string events = "0 r12 1 1 r12 2 2 r12 5 3 r12 2 5 r12 3";
    std::string extra = "1s r4";
    std::string anno = "1s r94";
    std::string timeTable = "r1548 1s 257s r68";
    std::string lines = "r1202";
    std::string windows = "'Caffeine':50 0.5f 1f r620 'Second':50 0f 9f r620";
    int channels = 1;

    [[nodiscard]] std::string bytes() const {
        std::string all = layOutRun(version + " r66 " + info + " " + count);
        for (int channel = 0; channel < channels; ++channel) {
            all += layOutRun(signal);
        }
        for (int channel = 0; channel < channels; ++channel) {
            all += layOutRun(results + " " + events + " " + extra);
        }
        return all + layOutRun(anno + " r256 " + timeTable + " " + lines + " " + windows);
    }
};

} // namespace korlit::test
