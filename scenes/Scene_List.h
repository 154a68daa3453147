// Scene_List: the drawing function of every scene, for the table in Scenes.cpp. Each is defined in the file of its topic.
#ifndef SCENE_LIST_H
#define SCENE_LIST_H

#include "Scene.h"

namespace scenes
{

using Drawing = void(Kanvo_BitmapARGB32& target, const Input& input);

Drawing Dashboard;        // Scene_Dashboard.cpp
Drawing FillSteps;        // Scene_Fill.cpp
Drawing FillOverlap;      //
Drawing BlitCopy;         // Scene_Blit.cpp
Drawing BlitAlpha;        //
Drawing BlitColorKey;     //
Drawing BlitFormats;      //
Drawing BlitPaths;        //
Drawing BlitColorMaps;    // Scene_BlitColor.cpp
Drawing AlphaMaps;        // Scene_BlitAlpha.cpp
Drawing RleBackground;    // Scene_Rle.cpp
Drawing RleMagnified;     //
Drawing RleFormats;       //
Drawing StretchScales;    // Scene_Stretch.cpp
Drawing StretchKeyed;     //
Drawing StretchMaps;      //
Drawing StretchPixels;    //
Drawing RotNeedles;       // Scene_Rot.cpp
Drawing RotIcons;         //
Drawing RotSeams;         //
Drawing RotPivot;         //
Drawing RotPixels;        //
Drawing LineFans;         // Scene_Lines.cpp
Drawing LineWidths;       //
Drawing LineCaps;         //
Drawing LinePatterns;     //
Drawing LineClips;        //
Drawing DotSizes;         // Scene_Dots.cpp
Drawing DotClips;         //
Drawing PolygonShapes;    // Scene_Polygons.cpp
Drawing PolygonOutlines;  //
Drawing PolygonSeams;     //
Drawing PolygonTextures;  //
Drawing PolygonGauge;     //
Drawing ClipEdges;        // Scene_Clip.cpp
Drawing DebugFont;        // Scene_DebugFont.cpp
Drawing NightFlight;      // Scene_NightFlight.cpp
Drawing OwnPicture;       // Scene_OwnPicture.cpp

}  // namespace scenes

#endif
