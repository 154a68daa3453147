// Image_Rle: the smallest token stream by dynamic programming, the stored image around it, and a reader that trusts
// nothing.
#include "Image_Rle.h"

#include <algorithm>
#include <stdexcept>

#include "Image_Bytes.h"

namespace image
{
namespace
{

// ---- the smallest token stream -------------------------------------------------------------------------------------
//
// Cost(i): the least that tokens for the pixels from i on cost, end token included; M: the longest token.
//
//     Cost(n) = 2 units
//     Cost(i) = the least of  2 + Cost(i + k)        a run,     1 <= k <= M, the pixels i .. i+k-1 all equal
//                             2 + k + Cost(i + k)    a literal, 1 <= k <= M
//
// A cost is a pair, units before tokens, compared in that order: one number, units in the upper half.
//
// Cost never grows with i: the best stream from i on, its first token made one pixel shorter (dropped when it had only
// one), is a stream from i + 1 on and costs no more, in units and in tokens. So the best run is the longest one, and
// only literals leave a choice: the k with the least Cost(i + k) + k, that is, the least Cost(j) + j over the window
// i < j <= i + M, which slides by one per pixel. A queue of positions whose values rise keeps that least at its front,
// and every position enters and leaves it once: linear time, whatever M.
//
// The bound: literals of M pixels and one for the rest are among the streams compared, and they cost
// n + 2 ceil(n / M) + 2 units.

//! Two units per pixel at most, as M = 1 has them, and the position added to them in the queue: below 2^32.
constexpr std::size_t MostPixels = std::size_t{LongestSide} * LongestSide;

constexpr std::uint64_t Units(std::uint64_t count)
{
    return count << 32;
}
constexpr std::uint64_t Token = Units(2) + 1;

//! What the last M + 1 positions cost, and the queue over them.
class Window
{
public:
    explicit Window(std::uint32_t longestToken) : m_reach(longestToken)
    {
        std::size_t size = 1;
        while (size <= longestToken)
        {
            size *= 2;
        }
        m_mask = size - 1;
        m_cost.resize(size);
        m_queue.resize(size);
    }

    //! Positions come in falling order.
    void Add(std::size_t position, std::uint64_t cost)
    {
        m_cost[position & m_mask] = cost;
        while (m_front != m_back && Queued(m_front) - position >= m_reach)
        {
            ++m_front;  // out of reach for the pixel before this position
        }
        const std::uint64_t key = Key(position);
        while (m_front != m_back && Key(Queued(m_back - 1)) > key)
        {
            --m_back;
        }
        m_queue[m_back & m_mask] = position;
        ++m_back;
    }

    std::uint64_t Cost(std::size_t position) const { return m_cost[position & m_mask]; }

    //! Where a literal from the pixel before the last position on had best end; the furthest of equally good places.
    std::size_t BestEnd() const { return Queued(m_front); }

private:
    std::size_t   Queued(std::size_t at) const { return m_queue[at & m_mask]; }
    std::uint64_t Key(std::size_t position) const { return Cost(position) + Units(position); }

    std::uint32_t              m_reach;
    std::size_t                m_mask;
    std::vector<std::uint64_t> m_cost;
    std::vector<std::size_t>   m_queue;
    std::size_t                m_front = 0;
    std::size_t                m_back  = 0;
};

//! Cost(0). choose(i, k) is told what to do at pixel i, the last pixel first: a literal of k pixels, or for k = 0 the
//! longest run. Equal costs: the run, then the longest literal.
template <class Choose>
std::uint64_t Solve(const std::vector<Index>& indices, std::uint32_t longestToken, const Choose& choose)
{
    if (longestToken == 0 || longestToken > 65535 || indices.size() > MostPixels)
    {
        throw std::invalid_argument("tokens have 1 to 65535 pixels, images at most 32767 x 32767");
    }
    Window        window(static_cast<std::uint32_t>(std::min<std::size_t>(longestToken, indices.size())));
    std::uint64_t cost   = Units(2);
    std::size_t   runEnd = indices.size();  // of the equal pixels from i on
    for (std::size_t i = indices.size(); i-- > 0;)
    {
        window.Add(i + 1, cost);
        if (i + 1 < indices.size() && indices[i] != indices[i + 1])
        {
            runEnd = i + 1;
        }
        const std::size_t   end     = window.BestEnd();
        const std::uint64_t run     = Token + window.Cost(std::min(runEnd, i + longestToken));
        const std::uint64_t literal = Token + Units(end - i) + window.Cost(end);

        cost = std::min(run, literal);
        choose(i, run <= literal ? 0 : end - i);
    }
    return cost;
}

// ---- reading -------------------------------------------------------------------------------------------------------

std::string Words(std::initializer_list<std::string> words)
{
    std::string text;
    for (const std::string& word : words)
    {
        text += word;
    }
    return text;
}

//! Fills header and palette.
Fault ReadHeader(const Bytes& bytes, std::uint32_t longestSide, StoredImage& stored)
{
    Header& header = stored.header;
    if (bytes.size < Header::Size)
    {
        return {Words({std::to_string(bytes.size), " bytes are less than a header"}), bytes.size};
    }
    if (bytes.Word(0) != Header::Kanvo)
    {
        return {"does not start with KNVO", 0};
    }
    if (bytes.Word(4) != Header::Rle)
    {
        return {"second word is not \"RLE \"", 4};
    }
    header.version = bytes.data[9];
    if (header.version != Header::Version)
    {
        return {Words({"version ", std::to_string(header.version), ", not 1"}), 9};
    }
    if (bytes.data[8] != 8 && bytes.data[8] != 16)
    {
        return {Words({"token unit of ", std::to_string(bytes.data[8]), " bits, not 8 or 16"}), 8};
    }
    header.unit       = static_cast<Unit>(bytes.data[8]);
    header.opaqueOnly = bytes.data[10] != 0;
    header.alphaBits  = bytes.data[12];
    header.redBits    = bytes.data[13];
    header.greenBits  = bytes.data[14];
    header.blueBits   = bytes.data[15];
    header.width      = bytes.Word(16);
    header.height     = bytes.Word(20);
    for (const std::size_t offset : {std::size_t{16}, std::size_t{20}})
    {
        if (const std::uint32_t side = bytes.Word(offset); side == 0 || side > longestSide)
        {
            return {Words({offset == 16 ? "width " : "height ", std::to_string(side), ", not 1 to ",
                           std::to_string(longestSide)}),
                    offset};
        }
    }
    header.paletteCount            = bytes.Word(24);
    header.tokenStart              = bytes.Word(36);
    const std::uint64_t paletteEnd = Header::Size + std::uint64_t{4} * header.paletteCount;
    if (header.paletteCount == 0 || header.paletteCount > LongestPalette(header.unit) || paletteEnd > bytes.size)
    {
        return {Words({"palette of ", std::to_string(header.paletteCount), " entries is empty, too long or beyond the ",
                       std::to_string(bytes.size), " bytes"}),
                24};
    }
    if (header.tokenStart < paletteEnd || header.tokenStart > bytes.size ||
        header.tokenStart % BytesOf(header.unit) != 0)
    {
        return {Words({"tokens start at ", std::to_string(header.tokenStart),
                       ", inside the palette, misaligned or beyond the data"}),
                36};
    }
    stored.palette.resize(header.paletteCount);
    for (std::size_t entry = 0; entry < stored.palette.size(); ++entry)
    {
        stored.palette[entry] = bytes.Word(Header::Size + 4 * entry);
    }
    return {};
}

//! Gathers a stream's statistics token by token.
class Counter
{
public:
    Counter(std::uint32_t width, TokenStatistics& statistics) : m_width(width), m_statistics(statistics) {}

    void Add(bool literal, std::uint32_t count)
    {
        std::size_t lengthClass = 0;
        while (LastOfClass(lengthClass) < count)
        {
            ++lengthClass;
        }
        TokenStatistics& to = m_statistics;
        ++(literal ? to.literals : to.runs);
        ++(literal ? to.literalsByLength : to.runsByLength)[lengthClass];
        (literal ? to.literalPixels : to.runPixels) += count;
        std::uint32_t& longest = literal ? to.longestLiteral : to.longestRun;
        longest                = std::max(longest, count);

        while (count != 0)
        {
            const std::uint32_t here = std::min(count, m_width - m_column);
            m_rowUnits += 2 + (literal ? here : 0);
            m_column += here;
            count -= here;
            if (m_column == m_width)
            {
                CloseRow();
            }
        }
    }

    //! Of a stream that ends inside a row, that row counts with what it has.
    void Finish() { CloseRow(); }

private:
    void CloseRow()
    {
        if (m_rowUnits > m_statistics.worstRowUnits)
        {
            m_statistics.worstRowUnits = m_rowUnits;
            m_statistics.worstRow      = m_row;
        }
        ++m_row;
        m_column   = 0;
        m_rowUnits = 0;
    }

    std::uint32_t    m_width;
    TokenStatistics& m_statistics;
    std::uint32_t    m_row      = 0;
    std::uint32_t    m_column   = 0;
    std::uint64_t    m_rowUnits = 0;
};

//! Fills everything that follows from the tokens.
Fault ReadTokens(const Bytes& bytes, StoredImage& stored)
{
    const Header&       header    = stored.header;
    const std::uint32_t unitBytes = BytesOf(header.unit);
    const std::size_t   units     = (bytes.size - header.tokenStart) / unitBytes;
    const std::size_t   pixels    = std::size_t{header.width} * header.height;
    const auto          offset    = [&](std::size_t unit) { return header.tokenStart + unit * unitBytes; };
    const auto          at        = [&](std::size_t unit) -> std::uint16_t
    { return unitBytes == 1 ? bytes.data[offset(unit)] : bytes.Half(offset(unit)); };

    Counter           counter(header.width, stored.tokens);
    std::vector<bool> used(stored.palette.size());
    std::size_t       unit = 0;
    for (;;)
    {
        const std::size_t done = stored.indices.size();
        if (units - unit < 2)
        {
            return {done == pixels ? "the end token is missing" : "the data end before the image does", offset(unit)};
        }
        const bool          literal = at(unit) == 0;
        const std::uint32_t count   = at(literal ? unit + 1 : unit);
        if (count == 0)
        {
            counter.Finish();
            stored.tokens.units       = unit + 2;
            stored.tokens.usedEntries = static_cast<std::size_t>(std::count(used.begin(), used.end(), true));
            stored.bytes              = offset(unit + 2);
            stored.endsEarly          = done != pixels;
            return {};
        }
        if (done == pixels)
        {
            return {"more pixels follow the last one", offset(unit)};
        }
        const std::size_t first    = unit + (literal ? 2 : 1);
        const std::size_t distinct = literal ? count : 1;
        if (units - first < distinct)
        {
            return {"a token reaches beyond the data", offset(unit)};
        }
        for (std::size_t from = first; from < first + distinct; ++from)
        {
            const std::uint16_t index = at(from);
            if (index >= stored.palette.size())
            {
                return {Words({"index ", std::to_string(index), " in a palette of ",
                               std::to_string(stored.palette.size())}),
                        offset(from)};
            }
            used[index] = true;
            stored.indices.insert(stored.indices.end(), literal ? 1 : count, index);
        }
        if (pixels - done < count)
        {
            return {Words({"a token of ", std::to_string(count), " pixels where ", std::to_string(pixels - done),
                           " are left"}),
                    offset(unit)};
        }
        counter.Add(literal, count);
        unit = first + distinct;
    }
}

}  // namespace

std::vector<std::uint16_t> EncodeTokens(const std::vector<Index>& indices, std::uint32_t longestToken)
{
    std::vector<std::uint16_t> literals(indices.size());  // what Solve chooses at every pixel
    const std::uint64_t        cost =
        Solve(indices, longestToken,
              [&](std::size_t i, std::size_t literal) { literals[i] = static_cast<std::uint16_t>(literal); });

    std::vector<std::uint16_t> units;
    units.reserve(cost >> 32);
    for (std::size_t i = 0; i < indices.size();)
    {
        const std::uint16_t literal = literals[i];
        const auto          from    = indices.begin() + static_cast<std::ptrdiff_t>(i);
        if (literal != 0)
        {
            units.push_back(0);
            units.push_back(literal);
            units.insert(units.end(), from, from + literal);
            i += literal;
        }
        else
        {
            const std::size_t most  = std::min<std::size_t>(longestToken, indices.size() - i);
            std::uint16_t     count = 1;
            while (count < most && indices[i + count] == indices[i])
            {
                ++count;
            }
            units.push_back(count);
            units.push_back(indices[i]);
            i += count;
        }
    }
    units.push_back(0);
    units.push_back(0);
    return units;
}

std::size_t CountUnits(const std::vector<Index>& indices, Unit unit)
{
    return Solve(indices, LongestToken(unit), [](std::size_t, std::size_t) {}) >> 32;
}

std::vector<std::uint8_t> BuildImage(const std::vector<std::uint32_t>& palette, const std::vector<Index>& indices,
                                     std::uint32_t width, std::uint32_t height, Unit unit)
{
    CheckSize(width, height, indices.size());
    if (palette.empty() || palette.size() > LongestPalette(unit))
    {
        throw std::invalid_argument("a palette has 1 to 256 or 65536 entries");
    }
    if (*std::max_element(indices.begin(), indices.end()) >= palette.size())
    {
        throw std::invalid_argument("every index is inside the palette");
    }
    const std::vector<std::uint16_t> tokens    = EncodeTokens(indices, LongestToken(unit));
    const std::uint32_t              unitBytes = BytesOf(unit);
    const bool                       opaque    = IsOpaque(palette);
    const std::size_t                start     = Header::Size + 4 * palette.size();  // a multiple of any unit

    std::vector<std::uint8_t> bytes;
    bytes.reserve(start + tokens.size() * unitBytes);
    Append(bytes, Header::Kanvo, 4);
    Append(bytes, Header::Rle, 4);
    Append(bytes, static_cast<std::uint32_t>(unit), 1);
    Append(bytes, Header::Version, 1);
    Append(bytes, opaque ? 1 : 0, 1);
    Append(bytes, 0, 1);
    for (const std::uint32_t bits : {opaque ? 0u : 8u, 8u, 8u, 8u})
    {
        Append(bytes, bits, 1);
    }
    Append(bytes, width, 4);
    Append(bytes, height, 4);
    Append(bytes, static_cast<std::uint32_t>(palette.size()), 4);
    Append(bytes, 0, 4);
    Append(bytes, 0, 4);
    Append(bytes, static_cast<std::uint32_t>(start), 4);
    for (const std::uint32_t colour : palette)
    {
        Append(bytes, colour, 4);
    }
    for (const std::uint16_t number : tokens)
    {
        Append(bytes, number, unitBytes);
    }
    return bytes;
}

std::vector<std::uint8_t> BuildImage(const Indexed& indexed, std::uint32_t width, std::uint32_t height, Unit unit)
{
    return BuildImage(indexed.palette, indexed.indices, width, height, unit);
}

std::size_t StoredSize(const Indexed& indexed, Unit unit)
{
    return Header::Size + 4 * indexed.palette.size() + CountUnits(indexed.indices, unit) * BytesOf(unit);
}

StoredImage ReadImage(const void* data, std::size_t size, std::uint32_t longestSide)
{
    const Bytes bytes{static_cast<const std::uint8_t*>(data), size};
    StoredImage stored;
    stored.fault = ReadHeader(bytes, longestSide, stored);
    if (!stored.fault)
    {
        stored.fault = ReadTokens(bytes, stored);
    }
    return stored;
}

StoredImage ReadImage(const std::vector<std::uint8_t>& data, std::uint32_t longestSide)
{
    return ReadImage(data.data(), data.size(), longestSide);
}

Picture ToPicture(const StoredImage& stored)
{
    Picture picture;
    picture.width  = stored.header.width;
    picture.height = stored.header.height;
    picture.argb   = ColoursOf(Indexed{stored.palette, stored.indices});
    picture.argb.resize(std::size_t{picture.width} * picture.height);
    if (!stored.endsEarly)
    {
        picture.palette = stored.palette;
        picture.indices = stored.indices;
    }
    return picture;
}

}  // namespace image
