#pragma once
#include <vlMaths/Quaternion.h>

namespace vlEditor {

/** Angles as a person types and reads them, in degrees. Roll turns about Z first, then pitch about
 *  X, then yaw about Y: positive yaw turns to the right, positive pitch down, positive roll to the
 *  left. The engine holds a quaternion and radians; the way there and back gives the angles that
 *  were typed where pitch lies within 90 degrees, yaw between -180 and 360 and roll within 180, and
 *  otherwise others that mean the same. Looking straight up or down, roll is 0: yaw says all. */
struct CameraAngles {
    float pitch = 0;
    float yaw = 0;
    float roll = 0;

    static CameraAngles of(const vlMaths::Quaternion& orientation);
    vlMaths::Quaternion toOrientation() const;

    friend bool operator==(const CameraAngles&, const CameraAngles&) = default;
};

/// Of an angle in radians, in the fewest digits that mean the same.
float degreesOf(float radians);
float radiansOf(float degrees);

} // namespace vlEditor
