// Kanvo_Enums: the enumerations that drawing calls, bitmaps and the render state share. Values are exact: stored images
// and applications rely on them.
#ifndef KANVO_ENUMS_H
#define KANVO_ENUMS_H

#include "Tov_Types.h"

//! What a bitmap's pixels are.
enum BitmapType : Tov_UByte
{
    BM_UNKNWON    = 0,  //!< spelt like this since the first release
    BM_RGB32      = 1,
    BM_RGB32RLE8  = 2,
    BM_RGB32RLE16 = 3,
    BM_ARGB32     = 4,
    BM_ALPHA8     = 5,
    BM_RGB565     = 6,
    BM_RGB555     = 7,
    BM_ALPHA5_2   = 8,
    BM_ALPHA1     = 9,
    BM_QUANTITY   = 10
};

//! Who owns a bitmap's buffer.
enum BitmapBufferType : Tov_UByte
{
    BBT_KANVO    = 0,  //!< managed by the library
    BBT_RAM      = 1,
    BBT_ROM      = 2,  //!< never allocated, never freed
    BBT_QUANTITY = 3
};

//! Flags of the blit family and of FillRect. BLIT_ASPECT and BLIT_COPY_ONLY_ALPHA share one bit on purpose: the
//! operation that receives the flags decides the meaning.
enum DrawBlit_Flags : Tov_Flag
{
    BLIT_COLORKEY        = 0x1,       //!< leave out source pixels that equal the colour key
    BLIT_BILINEAR        = 0x40000,   //!< filter scaled and rotated sources
    BLIT_NOCLIP          = 0x100000,  //!< the caller promises that both rectangles lie inside their bitmaps
    BLIT_ASPECT          = 0x200000,  //!< scaled blits: keep the aspect ratio
    BLIT_COPY_ONLY_ALPHA = 0x200000   //!< alpha-map blits: write the map as alpha instead of blending
};

//! Flags of DrawPolygon.
enum DrawPolygon_Flags : Tov_Flag
{
    POLY_NONE            = 0,
    POLY_USE_RENDERSTATE = 0x1,
    POLY_EXTRUDE         = 0x80,
    POLY_HINT_CW         = 0x100,
    POLY_HINT_CCW        = 0x200,
    POLY_ANTIALIAS       = 0x10000,
    POLY_HQAA            = 0x20000,
    POLY_NOCLIP          = 0x100000
};

//! Flags of DrawLine; DrawDot reads the two quality bits. The wide-line bits are set by the line code itself.
enum Kanvo_Lineflags : Tov_Flag
{
    Kanvo_LF_NONE                        = 0,
    Kanvo_LF_ROUND_START                 = 0x00000001,  //!< a round cap at the start, on lines of 3 pixels and more
    Kanvo_LF_ROUND_END                   = 0x00000002,
    Kanvo_LF_ANTIALIAS                   = 0x00010000,
    Kanvo_LF_HQ_AA                       = 0x00020000,  //!< filtered edges; with or instead of Kanvo_LF_ANTIALIAS
    Kanvo_LF_DO_NOT_CLIP                 = 0x00100000,  //!< the caller promises that the line lies inside the bitmap
    Kanvo_LF_WIDE_S                      = 0x01000000,
    Kanvo_LF_WIDE_T                      = 0x02000000,
    Kanvo_LF_WIDE                        = 0x03000000,
    Kanvo_LF_WIDE_2                      = 0x04000000,
    Kanvo_LF_PATTERN                     = 0x08000000,  //!< colours from the render state's line pattern
    Kanvo_LF_ADVANCEPATTERN              = 0x10000000,  //!< the next line goes on where this one's pattern ends
    Kanvo_LF_RESCALEPATTERN              = 0x20000000,  //!< the reference length of the pattern maps onto this line
    Kanvo_LF_AA_CLIP_END_PART_CORRECTION = 0x40000000
};

//! Slots of Kanvo_RenderState. Those prefixed I_ are caches of the library.
enum RenderStates : Tov_UByte
{
    COLOR1            = 0,
    COLOR2            = 1,
    ALPHA             = 2,
    ALPHAENABLE       = 3,
    LINEWIDTH         = 4,
    POINTSIZE         = 5,
    BASEDEPTH         = 6,
    CULLING           = 7,
    TEXTUREENABLE     = 8,
    TEXTUREMODE       = 9,
    TEXORIGINX        = 10,
    TEXORIGINY        = 11,
    TEXORIGINZ        = 12,
    TEXUAXISX         = 13,
    TEXUAXISY         = 14,
    TEXUAXISZ         = 15,
    TEXVAXISX         = 16,
    TEXVAXISY         = 17,
    TEXVAXISZ         = 18,
    TEXTURE           = 19,
    TEXTUREBLENDING   = 20,
    LINEPATTERN       = 21,
    LINEPATTERNENABLE = 22,
    LINEPATTERNSCALE  = 23,
    LINEPATTERNOFFSET = 24,
    VERTEXCOLORENABLE = 25,
    TEXTUREWRAPU      = 26,
    TEXTUREWRAPV      = 27,
    TEXTUREFILTER     = 28,
    OPTIMIZED_BLIT    = 29,
    I_TEXMATVALID     = 30,
    I_TEXMATCACHE     = 31,
    I_LINPATFACTOR    = 32,
    I_LINPATREFLEN    = 33,
    Kanvo_RS_QUANTITY = 34
};

//! Values of the slot TEXTUREMODE.
enum Texture_Modes : Tov_UInt
{
    TM_PLANE2D = 1,
    TM_PLANE3D = 2,
    TM_UV      = 4,
    TM_DIRECT  = 5
};

//! Values of the slot TEXTUREBLENDING.
enum Texture_Blending : Tov_UInt
{
    TB_NORMAL   = 0,
    TB_MULTIPLY = 1,
    TB_ADD      = 2,
    TB_COLOR    = 3
};

//! Values of the slot OPTIMIZED_BLIT.
enum Optimized_Blit : Tov_UInt
{
    OB_NONE = 0,  //!< portable path only
    OB_NEON = 1   //!< the loops of neonloops.h, where a call does not ask for a colour key
};

#endif
