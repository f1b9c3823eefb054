// Code page 932 against the tables generated from the platform's own answers
// (tools/gen-cp932). The same test runs in both builds: on Linux it checks
// the conversion layer that works from the tables; under Wine it checks the
// tables against the real MultiByteToWideChar, WideCharToMultiByte and
// _ismbclegal, which proves that the checked-in data matches its source.
#include <random>
#include <vector>

#include "platform/cp932.h"
#include "platform/platform.h"
#include "support.h"

namespace {

namespace cp = kz::cp932;
using kz::os::WCHAR;

#include "platform/posix/cp932_vectors.inc"

std::vector<WCHAR> decode(const char* bytes, int* result) {
  std::vector<WCHAR> out(4, WCHAR{0x7B7B});
  *result = kz::os::MultiByteToWideChar(kz::os::kAnsiCodePage, 0, bytes, -1, out.data(), 4);
  return out;
}

std::vector<char> encode(const WCHAR* units, int* result) {
  std::vector<char> out(4, char{0x7B});
  *result = kz::os::WideCharToMultiByte(kz::os::kAnsiCodePage, 0, units, -1, out.data(), 4, nullptr,
                                        nullptr);
  return out;
}

TEST(CodePage932, EverySingleByteDecodesAsTheTableSays) {
  int differences = 0;
  for (unsigned byte = 0; byte < 256; ++byte) {
    const char text[2] = {static_cast<char>(byte), 0};
    int result = 0;
    const auto out = decode(text, &result);
    const int expected = byte == 0 ? 1 : 2;
    if (result != expected ||
        out[0] != static_cast<WCHAR>(cp::decode_single(static_cast<unsigned char>(byte))) ||
        (byte != 0 && out[1] != 0) || out[expected] != WCHAR{0x7B7B}) {
      ADD_FAILURE() << std::hex << "byte " << byte << " gave " << result << ", " << +out[0];
      ++differences;
    }
  }
  EXPECT_EQ(differences, 0);
}

TEST(CodePage932, EveryByteAfterALeadByteDecodesAsTheTableSays) {
  int differences = 0, leads = 0;
  for (unsigned lead = 0; lead < 256; ++lead) {
    if (cp::kLeadIndex[lead] == 0) continue;
    ++leads;
    for (unsigned trail = 1; trail < 256; ++trail) {
      const char text[3] = {static_cast<char>(lead), static_cast<char>(trail), 0};
      int result = 0;
      const auto out = decode(text, &result);
      const auto expected = static_cast<WCHAR>(
          cp::decode_pair(static_cast<unsigned char>(lead), static_cast<unsigned char>(trail)));
      if (result != 2 || out[0] != expected || out[1] != 0 || out[2] != WCHAR{0x7B7B}) {
        if (++differences < 20)
          ADD_FAILURE() << std::hex << lead << " " << trail << " gave " << result << ", "
                        << +out[0];
      }
    }
  }
  EXPECT_EQ(differences, 0);
  EXPECT_EQ(leads, 60);
}

TEST(CodePage932, EveryUnitEncodesAsTheTableSays) {
  int differences = 0;
  for (unsigned unit = 1; unit < 0x10000; ++unit) {
    const WCHAR text[2] = {static_cast<WCHAR>(unit), 0};
    int result = 0;
    const auto out = encode(text, &result);
    const unsigned bytes = cp::encode_unit(static_cast<char16_t>(unit));
    const auto lead = static_cast<char>(bytes >> 8), last = static_cast<char>(bytes & 0xFF);
    const bool same = bytes < 0x100
                          ? result == 2 && out[0] == last && out[1] == 0 && out[2] == char{0x7B}
                          : result == 3 && out[0] == lead && out[1] == last && out[2] == 0 &&
                                out[3] == char{0x7B};
    if (!same && ++differences < 20)
      ADD_FAILURE() << std::hex << "unit " << unit << " gave " << result << ", "
                    << +static_cast<unsigned char>(out[0]);
  }
  EXPECT_EQ(differences, 0);
}

TEST(CodePage932, PairTestOfTheRuntimeMatchesTheTableForEveryValue) {
  int differences = 0;
  for (unsigned value = 0; value < 0x10000; ++value) {
    const bool expected = cp::kLegalLead[value >> 8] != 0 && cp::kLegalTrail[value & 0xFF] != 0;
    if ((kz::os::_ismbclegal(value) != 0) != expected && ++differences < 20)
      ADD_FAILURE() << std::hex << value;
  }
  EXPECT_EQ(differences, 0);
}

TEST(CodePage932, LeadAndTrailRangesAreTheDocumentedOnes) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    const bool lead = (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
    const bool trail = (byte >= 0x40 && byte <= 0x7E) || (byte >= 0x80 && byte <= 0xFC);
    EXPECT_EQ(cp::kLegalLead[byte] != 0, lead) << std::hex << byte;
    EXPECT_EQ(cp::kLeadIndex[byte] != 0, lead) << std::hex << byte;
    EXPECT_EQ(cp::kLegalTrail[byte] != 0, trail) << std::hex << byte;
  }
}

// Random texts with what the platform answered for them, sizes around the
// needed one included: how a lead byte swallows an invalid trail inside a
// longer text, what a too-small destination holds, and what stays untouched.
TEST(CodePage932, RandomTextsConvertAsThePlatformDidWhenTheyWereRecorded) {
  int decoded = 0, encoded = 0;
  for (std::size_t at = 0; at < std::size(kDecodeVectors); ++decoded) {
    const std::size_t length = kDecodeVectors[at++];
    std::string bytes;
    for (std::size_t i = 0; i < length; ++i)
      bytes.push_back(static_cast<char>(kDecodeVectors[at++]));
    const int size = kDecodeVectors[at++];
    const int expected = kDecodeVectors[at++];
    std::vector<WCHAR> out(size + 1, WCHAR{0x7B7B});
    const int result = kz::os::MultiByteToWideChar(kz::os::kAnsiCodePage, 0, bytes.c_str(), -1,
                                                   size ? out.data() : nullptr, size);
    ASSERT_EQ(result, expected) << "decode record " << decoded;
    for (int i = 0; i < size; ++i)
      ASSERT_EQ(out[i], static_cast<WCHAR>(kDecodeVectors[at++])) << "decode record " << decoded;
    ASSERT_EQ(out[size], WCHAR{0x7B7B});
  }
  for (std::size_t at = 0; at < std::size(kEncodeVectors); ++encoded) {
    const std::size_t length = kEncodeVectors[at++];
    std::vector<WCHAR> units;
    for (std::size_t i = 0; i < length; ++i)
      units.push_back(static_cast<WCHAR>(kEncodeVectors[at++]));
    units.push_back(0);
    const int size = kEncodeVectors[at++];
    const int expected = kEncodeVectors[at++];
    std::vector<char> out(size + 1, char{0x7B});
    const int result =
        kz::os::WideCharToMultiByte(kz::os::kAnsiCodePage, 0, units.data(), -1,
                                    size ? out.data() : nullptr, size, nullptr, nullptr);
    ASSERT_EQ(result, expected) << "encode record " << encoded;
    for (int i = 0; i < size; ++i)
      ASSERT_EQ(static_cast<unsigned char>(out[i]), kEncodeVectors[at++])
          << "encode record " << encoded;
    ASSERT_EQ(out[size], char{0x7B});
  }
  EXPECT_EQ(decoded, 1500);
  EXPECT_EQ(encoded, 1500);
}

// The plain model of the tables: a lead byte takes the next byte unless it
// is the terminator; each unit is encoded on its own.
std::vector<WCHAR> model_decode(const std::string& bytes) {
  std::vector<WCHAR> out;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if (cp::kLeadIndex[byte] != 0 && i + 1 < bytes.size())
      out.push_back(
          static_cast<WCHAR>(cp::decode_pair(byte, static_cast<unsigned char>(bytes[++i]))));
    else
      out.push_back(static_cast<WCHAR>(cp::decode_single(byte)));
  }
  out.push_back(0);
  return out;
}

std::vector<char> model_encode(const std::vector<WCHAR>& units) {
  std::vector<char> out;
  for (WCHAR unit : units) {
    const unsigned bytes = cp::encode_unit(static_cast<char16_t>(unit));
    if (bytes > 0xFF) out.push_back(static_cast<char>(bytes >> 8));
    out.push_back(static_cast<char>(bytes & 0xFF));
  }
  out.push_back(0);
  return out;
}

// Long texts of runs (ASCII, lead bytes, double-byte text, anything) with
// destinations of the needed size, one less and one more: the block-wise
// paths against the model, and under Wine the model against the platform.
TEST(CodePage932, LongMixedTextsMatchThePlainModel) {
  std::mt19937 random(1932);
  auto pick = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };
  for (int round = 0; round < 600; ++round) {
    std::string bytes;
    const unsigned length = pick(400);
    while (bytes.size() < length) {
      const unsigned run = 1 + pick(80);
      const unsigned kind = pick(4);
      for (unsigned k = 0; k < run; ++k) {
        unsigned byte = 0;
        switch (kind) {
          case 0:
            byte = 1 + pick(0x7F);
            break;
          case 1:
            byte = 0x81 + pick(0x1F);
            break;  // lead bytes only
          case 2:
            byte = k % 2 == 0 ? 0x88 + pick(0x10) : 0x40 + pick(0xBD);
            break;
          default:
            byte = 1 + pick(255);
            break;
        }
        bytes.push_back(static_cast<char>(byte));
      }
    }
    const auto expected = model_decode(bytes);
    const int needed = static_cast<int>(expected.size());
    ASSERT_EQ(kz::os::MultiByteToWideChar(kz::os::kAnsiCodePage, 0, bytes.c_str(), -1, nullptr, 0),
              needed);
    for (int size : {needed - 1, needed, needed + 1}) {
      if (size <= 0) continue;
      std::vector<WCHAR> out(size + 1, WCHAR{0x7B7B});
      const int result = kz::os::MultiByteToWideChar(kz::os::kAnsiCodePage, 0, bytes.c_str(), -1,
                                                     out.data(), size);
      ASSERT_EQ(result, size >= needed ? needed : 0) << round << " size " << size;
      const int compared = std::min(size, needed);
      for (int i = 0; i < compared; ++i) ASSERT_EQ(out[i], expected[i]) << round << " at " << i;
      for (int i = compared; i <= size; ++i)
        ASSERT_EQ(out[i], WCHAR{0x7B7B}) << round << " at " << i;
    }

    std::vector<WCHAR> units;
    while (units.size() < length) {
      const unsigned run = 1 + pick(80);
      const unsigned kind = pick(3);
      for (unsigned k = 0; k < run; ++k)
        units.push_back(static_cast<WCHAR>(kind == 0   ? 1 + pick(0x7F)
                                           : kind == 1 ? 0x3000 + pick(0x7000)
                                                       : 1 + pick(0xFFFF)));
    }
    const auto narrow = model_encode(units);
    units.push_back(0);
    const int narrow_needed = static_cast<int>(narrow.size());
    ASSERT_EQ(kz::os::WideCharToMultiByte(kz::os::kAnsiCodePage, 0, units.data(), -1, nullptr, 0,
                                          nullptr, nullptr),
              narrow_needed);
    for (int size : {narrow_needed - 2, narrow_needed - 1, narrow_needed, narrow_needed + 1}) {
      if (size <= 0) continue;
      std::vector<char> out(size + 1, char{0x7B});
      const int result = kz::os::WideCharToMultiByte(kz::os::kAnsiCodePage, 0, units.data(), -1,
                                                     out.data(), size, nullptr, nullptr);
      ASSERT_EQ(result, size >= narrow_needed ? narrow_needed : 0) << round << " size " << size;
      // A too-small destination holds the whole characters that fit.
      int fits = 0;
      while (fits < narrow_needed && fits < size) {
        const bool two = static_cast<unsigned char>(narrow[fits]) >= 0x80 &&
                         cp::kLeadIndex[static_cast<unsigned char>(narrow[fits])] != 0 &&
                         fits + 1 < narrow_needed;
        if (two && fits + 2 > size) break;
        fits += two ? 2 : 1;
      }
      for (int i = 0; i < fits; ++i) ASSERT_EQ(out[i], narrow[i]) << round << " at " << i;
      for (int i = fits; i <= size; ++i) ASSERT_EQ(out[i], char{0x7B}) << round << " at " << i;
    }
  }
}

}  // namespace
