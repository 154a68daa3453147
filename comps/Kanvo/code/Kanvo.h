// Kanvo: the one header that a user includes.
//
//   Kanvo              kLibrary;                                     // hands out memory
//   Kanvo_Screen       kScreen(&kLibrary);                           // one per display
//   Kanvo_BitmapARGB32 kTarget(&kScreen, 480, 272);                  // what is drawn into
//   kTarget.Lock();
//   kTarget.Clear(0xFFFFFFFF);
//   kTarget.FillRect(100, 50, 20, 20, 0x80FF0000, 0);                // half red, over white
//   kTarget.Unlock(0, 0, 479, 271);
#ifndef KANVO_H
#define KANVO_H

#include "Kanvo_BitmapA8.h"
#include "Kanvo_BitmapARGB32.h"
#include "Kanvo_BitmapRGB32.h"
#include "Kanvo_BitmapRGB565.h"
#include "Kanvo_BitmapRLE.h"
#include "Kanvo_Enums.h"
#include "Kanvo_Geometry.h"
#include "Kanvo_ImageCheck.h"
#include "Kanvo_Level.h"
#include "Kanvo_Object.h"
#include "Kanvo_Pattern.h"
#include "Kanvo_PrecompiledImageInfo.h"
#include "Kanvo_Primitive.h"
#include "Kanvo_RenderState.h"
#include "Kanvo_Screen.h"
#include "Kanvo_Texture.h"
#include "Trak_Assert.h"
#include "Trak_Profiler.h"

#endif
