// The interfaces and identifiers that the type library describes.
#pragma once

#include <DllTremvik_idl.h>
