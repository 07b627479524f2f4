// Nodes.h - all node classes of the layout tree in one include.
#pragma once

#include "layout/Box.h"
#include "layout/Content.h"
#include "layout/Field.h"
#include "layout/Fragment.h"
#include "layout/Glyph.h"
#include "layout/Image.h"
#include "layout/Line.h"
#include "layout/Node.h"
#include "layout/Page.h"
#include "layout/Picture.h"
#include "layout/Word.h"
