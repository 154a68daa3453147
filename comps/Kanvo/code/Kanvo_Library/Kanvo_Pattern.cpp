// Kanvo_Pattern: fills the table. Each entry takes the colour at its middle.
#include "Kanvo_Pattern.h"

#include "Tov_Math.h"

namespace
{

constexpr Tov_Value MAX_PERIOD = 1.0e6F;

Tov_Value EntryMiddle(Tov_UInt uiEntry)
{
    return (static_cast<Tov_Value>(uiEntry) + 0.5F) / static_cast<Tov_Value>(Kanvo_Pattern::COLORS);
}

Tov_UInt MixChannel(Kanvo_ColorARGB32 clA, Kanvo_ColorARGB32 clB, Tov_UInt uiShift, Tov_Value vT)
{
    const auto vA = static_cast<Tov_Value>((clA >> uiShift) & 0xFFU);
    const auto vB = static_cast<Tov_Value>((clB >> uiShift) & 0xFFU);
    return (Tov_FltToUInt(vA + (vB - vA) * vT + 0.5F) & 0xFFU) << uiShift;
}

Kanvo_ColorARGB32 Mix(Kanvo_ColorARGB32 clA, Kanvo_ColorARGB32 clB, Tov_Value vT)
{
    return MixChannel(clA, clB, 24, vT) | MixChannel(clA, clB, 16, vT) | MixChannel(clA, clB, 8, vT) |
           MixChannel(clA, clB, 0, vT);
}

Kanvo_ColorARGB32 ColorAt(const Kanvo_Pattern::Stop* pkStops, Tov_UInt uiCount, Tov_Value vPosition)
{
    Tov_UInt uiNext = 0;
    while (uiNext < uiCount && pkStops[uiNext].vPosition <= vPosition)
    {
        ++uiNext;
    }
    if (uiNext == 0 || uiNext == uiCount)
    {
        return pkStops[uiNext == 0 ? 0 : uiCount - 1].clColor;
    }
    const Kanvo_Pattern::Stop& kA = pkStops[uiNext - 1];
    const Kanvo_Pattern::Stop& kB = pkStops[uiNext];
    return Mix(kA.clColor, kB.clColor, (vPosition - kA.vPosition) / (kB.vPosition - kA.vPosition));
}

}  // namespace

Kanvo_Pattern::Kanvo_Pattern() : m_vPeriod(1.0F), m_aclColors() {}

void Kanvo_Pattern::Set(Tov_UInt uiEntry, Kanvo_ColorARGB32 clColor)
{
    m_aclColors[uiEntry]                  = clColor;
    m_aclColors[2 * COLORS - 1 - uiEntry] = clColor;
}

Tov_Bool Kanvo_Pattern::SetStops(const Stop* pkStops, Tov_UInt uiCount, Tov_Value vPeriod)
{
    if (pkStops == nullptr || uiCount == 0 || !(vPeriod > 0.0F && vPeriod <= MAX_PERIOD))
    {
        return false;
    }
    for (Tov_UInt uiStop = 0; uiStop < uiCount; ++uiStop)
    {
        const Tov_Value vBefore = uiStop > 0 ? pkStops[uiStop - 1].vPosition : 0.0F;
        if (!(pkStops[uiStop].vPosition >= vBefore && pkStops[uiStop].vPosition <= 1.0F))
        {
            return false;
        }
    }
    m_vPeriod = vPeriod;
    for (Tov_UInt uiEntry = 0; uiEntry < COLORS; ++uiEntry)
    {
        Set(uiEntry, ColorAt(pkStops, uiCount, EntryMiddle(uiEntry)));
    }
    return true;
}

Tov_Bool Kanvo_Pattern::SetDashes(const Tov_Value* pvLengths, Tov_UInt uiCount, Kanvo_ColorARGB32 clDash,
                                  Kanvo_ColorARGB32 clGap)
{
    Tov_Value vPeriod = 0.0F;
    for (Tov_UInt uiLength = 0; pvLengths != nullptr && uiLength < uiCount; ++uiLength)
    {
        if (!(pvLengths[uiLength] >= 0.0F))
        {
            return false;
        }
        vPeriod += pvLengths[uiLength];
    }
    const Tov_UInt uiRounds = uiCount % 2 + 1;
    vPeriod *= static_cast<Tov_Value>(uiRounds);
    if (!(vPeriod > 0.0F && vPeriod <= MAX_PERIOD))
    {
        return false;
    }
    m_vPeriod            = vPeriod;
    Tov_UInt  uiLength   = 0;
    Tov_Value vLengthEnd = pvLengths[0];
    for (Tov_UInt uiEntry = 0; uiEntry < COLORS; ++uiEntry)
    {
        const Tov_Value vAt = EntryMiddle(uiEntry) * vPeriod;
        while (vAt >= vLengthEnd && uiLength + 1 < uiCount * uiRounds)
        {
            ++uiLength;
            vLengthEnd += pvLengths[uiLength % uiCount];
        }
        Set(uiEntry, uiLength % 2 == 0 ? clDash : clGap);
    }
    return true;
}

void Kanvo_Pattern::Use(Kanvo_RenderState& kState)
{
    const Tov_Value vScale  = kState.GetValue(LINEPATTERNSCALE);
    const Tov_Value vLength = m_vPeriod * (vScale > 0.0F ? vScale : 1.0F);
    kState.Set(LINEPATTERN, static_cast<void*>(this));
    kState.Set(I_LINPATFACTOR, 1.0F / vLength);
    kState.Set(I_LINPATREFLEN, vLength);
}
