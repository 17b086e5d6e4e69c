#include "pictures/deflate.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

namespace kalvex {
namespace {

constexpr std::size_t kWindow = 32768, kLeastMatch = 3, kLongestMatch = 258;

// Fills each byte from the lowest bit.
struct BitWriter {
  std::string& bytes;
  std::uint32_t held = 0;
  int count = 0;
};

void PutBits(BitWriter& writer, std::uint32_t bits, int count) {
  writer.held |= bits << writer.count;
  writer.count += count;
  for (; writer.count >= 8; writer.count -= 8) {
    writer.bytes.push_back(static_cast<char>(writer.held));
    writer.held >>= 8;
  }
}

void PutLastByte(BitWriter& writer) {
  if (writer.count > 0) PutBits(writer, 0, 8 - writer.count);
}

// Codes are stored with the highest bit first, all other numbers with the lowest bit first.
void PutCode(BitWriter& writer, std::uint32_t code, int count) {
  std::uint32_t turned = 0;
  for (int i = 0; i < count; ++i) turned |= (code >> i & 1) << (count - 1 - i);
  PutBits(writer, turned, count);
}

// A literal byte, the end code (256) or the class of a length, in the fixed code.
void PutSymbol(BitWriter& writer, std::uint32_t symbol) {
  if (symbol < 144) return PutCode(writer, 0x30 + symbol, 8);
  if (symbol < 256) return PutCode(writer, 0x190 + symbol - 144, 9);
  if (symbol < 280) return PutCode(writer, symbol - 256, 7);
  PutCode(writer, 0xC0 + symbol - 280, 8);
}

// A length or a distance is stored as its class and extra bits for the place within the class.
struct ValueClass {
  std::uint32_t first;
  int bits;
};
constexpr ValueClass kLengths[] = {{3, 0},   {4, 0},   {5, 0},   {6, 0},   {7, 0},  {8, 0},  {9, 0},  {10, 0},
                                   {11, 1},  {13, 1},  {15, 1},  {17, 1},  {19, 2}, {23, 2}, {27, 2}, {31, 2},
                                   {35, 3},  {43, 3},  {51, 3},  {59, 3},  {67, 4}, {83, 4}, {99, 4}, {115, 4},
                                   {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0}};
constexpr ValueClass kDistances[] = {{1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},
                                     {9, 2},     {13, 2},    {17, 3},    {25, 3},     {33, 4},     {49, 4},
                                     {65, 5},    {97, 5},    {129, 6},   {193, 6},    {257, 7},    {385, 7},
                                     {513, 8},   {769, 8},   {1025, 9},  {1537, 9},   {2049, 10},  {3073, 10},
                                     {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13}};

const ValueClass* ClassOf(const ValueClass* first, const ValueClass* end, std::size_t value) {
  return std::upper_bound(first, end, value,
                          [](std::size_t wanted, const ValueClass& other) { return wanted < other.first; }) -
         1;
}

void PutMatch(BitWriter& writer, std::size_t length, std::size_t distance) {
  const ValueClass* ofLength = ClassOf(std::begin(kLengths), std::end(kLengths), length);
  PutSymbol(writer, static_cast<std::uint32_t>(257 + (ofLength - kLengths)));
  PutBits(writer, static_cast<std::uint32_t>(length) - ofLength->first, ofLength->bits);
  const ValueClass* ofDistance = ClassOf(std::begin(kDistances), std::end(kDistances), distance);
  PutCode(writer, static_cast<std::uint32_t>(ofDistance - kDistances), 5);
  PutBits(writer, static_cast<std::uint32_t>(distance) - ofDistance->first, ofDistance->bits);
}

// Earlier places with the same three bytes: the last place for each hash value, and for each place of the window the
// previous one.
class EarlierPlaces {
 public:
  explicit EarlierPlaces(std::string_view bytes) : bytes_(bytes), last_(kHashes, kNone), before_(kWindow, kNone) {}

  void Add(std::size_t place) {
    if (place + kLeastMatch > bytes_.size()) return;
    std::size_t& last = last_[HashAt(place)];
    before_[place % kWindow] = last;
    last = place;
  }

  struct Match {
    std::size_t length = 0, distance = 0;
  };
  Match LongestAt(std::size_t place) const {
    Match best;
    const std::size_t most = std::min(kLongestMatch, bytes_.size() - place);
    if (most < kLeastMatch) return best;
    std::size_t at = last_[HashAt(place)];
    for (int tries = 0; tries < kTries && at != kNone && place - at <= kWindow && best.length < most; ++tries) {
      const std::size_t length = CommonLength(at, place, most);
      if (length > best.length) best = {length, place - at};
      const std::size_t before = before_[at % kWindow];
      if (before >= at) break;  // none, or overwritten by a later place
      at = before;
    }
    return best;
  }

 private:
  static constexpr std::size_t kHashes = 32768, kNone = ~std::size_t{0};
  static constexpr int kTries = 64;

  std::size_t HashAt(std::size_t place) const {
    const auto byte = [&](std::size_t i) { return static_cast<std::size_t>(static_cast<unsigned char>(bytes_[i])); };
    return (byte(place) << 10 ^ byte(place + 1) << 5 ^ byte(place + 2)) % kHashes;
  }
  std::size_t CommonLength(std::size_t a, std::size_t b, std::size_t most) const {
    std::size_t length = 0;
    while (length < most && bytes_[a + length] == bytes_[b + length]) ++length;
    return length;
  }

  std::string_view bytes_;
  std::vector<std::size_t> last_, before_;
};

std::uint32_t Adler32(std::string_view bytes) {
  std::uint32_t a = 1, b = 0;
  for (const char byte : bytes) {
    a = (a + static_cast<unsigned char>(byte)) % 65521;
    b = (b + a) % 65521;
  }
  return b << 16 | a;
}

}  // namespace

std::string ZlibOf(std::string_view bytes) {
  std::string stream = "\x78\x9C";  // deflate with a window of 32 kB
  BitWriter writer{stream};
  PutBits(writer, 1, 1);  // the last block
  PutBits(writer, 1, 2);  // in the fixed code
  EarlierPlaces places(bytes);
  for (std::size_t at = 0; at < bytes.size();) {
    const EarlierPlaces::Match match = places.LongestAt(at);
    const bool worthIt = match.length >= kLeastMatch;
    if (worthIt) {
      PutMatch(writer, match.length, match.distance);
    } else {
      PutSymbol(writer, static_cast<unsigned char>(bytes[at]));
    }
    for (const std::size_t end = at + (worthIt ? match.length : 1); at < end; ++at) places.Add(at);
  }
  PutSymbol(writer, 256);
  PutLastByte(writer);
  const std::uint32_t check = Adler32(bytes);
  for (const int shift : {24, 16, 8, 0}) stream.push_back(static_cast<char>(check >> shift));
  return stream;
}

}  // namespace kalvex
