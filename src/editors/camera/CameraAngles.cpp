#include "editors/camera/CameraAngles.h"

#include <array>
#include <cmath>
#include <numbers>
#include <optional>

namespace vlEditor {
namespace {

constexpr double degreesPerRadian = 180 / std::numbers::pi;
constexpr int mostDecimals = 5;
/// Less than that of the exact angles is left when a quaternion has been rounded to floats.
constexpr int sureDecimals = 4;

struct Turn {
    double sine;
    double cosine;
    explicit Turn(float degrees) : sine(half(degrees, true)), cosine(half(degrees, false)) {}

private:
    /// Zero where it ought to be, so that right angles stay right.
    static double half(float degrees, bool isSine) {
        const double radians = static_cast<double>(degrees) / degreesPerRadian / 2;
        const double value = isSine ? std::sin(radians) : std::cos(radians);
        return std::abs(value) < 1e-12 ? 0 : value;
    }
};

float rounded(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double whole = std::round(value * scale) / scale;
    return static_cast<float>(whole == 0 ? 0 : whole);
}

struct ExactAngles {
    double pitch;
    double yaw;
    double roll;
    CameraAngles at(int decimals) const {
        return {rounded(pitch, decimals), rounded(yaw, decimals), rounded(roll, decimals)};
    }
};

/// As if it had no roll, which leaves yaw exact near straight up and down; and with roll.
std::array<ExactAngles, 2> exactAnglesOf(const vlMaths::Quaternion& q) {
    const double x = q.x, y = q.y, z = q.z, w = q.w;
    const double size = x * x + y * y + z * z + w * w;
    const double frontX = 2 * (x * z + w * y), frontY = 2 * (y * z - w * x);
    const double frontZ = size - 2 * (x * x + y * y);
    const double level = std::hypot(frontX, frontZ);
    const double pitch = std::atan2(-frontY, level) * degreesPerRadian;
    const double flatYaw = std::atan2(2 * (w * y - x * z), size - 2 * (y * y + z * z));
    const ExactAngles flat{pitch, flatYaw * degreesPerRadian, 0};
    if (level < 1e-6 * size) return {flat, flat};
    const double roll = std::atan2(2 * (x * y + w * z), size - 2 * (x * x + z * z));
    return {flat,
            ExactAngles{
                    pitch, std::atan2(frontX, frontZ) * degreesPerRadian, roll * degreesPerRadian}};
}

/// The angles, or those with a yaw beyond half a turn, where they make the orientation to the bit.
/// Of a quaternion and its opposite, which turn alike, each has its own.
std::optional<CameraAngles> match(const CameraAngles& angles, const vlMaths::Quaternion& wanted) {
    const vlMaths::Quaternion made = angles.toOrientation();
    if (made == wanted) return angles;
    const vlMaths::Quaternion opposite{-made.x, -made.y, -made.z, -made.w};
    if (opposite != wanted) return {};
    CameraAngles further = angles;
    if (angles.yaw < 0) further.yaw += 360;
    return further.toOrientation() == wanted ? further : angles;
}

} // namespace

CameraAngles CameraAngles::of(const vlMaths::Quaternion& orientation) {
    const auto exact = exactAnglesOf(orientation);
    for (int decimals = 0; decimals <= mostDecimals; ++decimals) {
        for (const ExactAngles& each : exact) {
            if (const auto found = match(each.at(decimals), orientation)) return *found;
        }
    }
    return exact.back().at(sureDecimals);
}

vlMaths::Quaternion CameraAngles::toOrientation() const {
    const Turn x(pitch), y(yaw), z(roll);
    const auto sum = [](double a, double b) { return static_cast<float>(a + b); };
    return {sum(y.cosine * x.sine * z.cosine, y.sine * x.cosine * z.sine),
            sum(y.sine * x.cosine * z.cosine, -y.cosine * x.sine * z.sine),
            sum(y.cosine * x.cosine * z.sine, -y.sine * x.sine * z.cosine),
            sum(y.cosine * x.cosine * z.cosine, y.sine * x.sine * z.sine)};
}

float degreesOf(float radians) {
    const double degrees = static_cast<double>(radians) * degreesPerRadian;
    for (int decimals = 0; decimals <= mostDecimals; ++decimals) {
        const float shown = rounded(degrees, decimals);
        if (radiansOf(shown) == radians) return shown;
    }
    return static_cast<float>(degrees);
}

float radiansOf(float degrees) {
    return static_cast<float>(static_cast<double>(degrees) / degreesPerRadian);
}

} // namespace vlEditor
