#include "../shared/solid.hlsli"
