#include "render/camera.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "base/conversions.h"

namespace zelmo {

namespace {

float Dot(const Vector3& a, const Vector3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

float Length(const Vector3& v) {
    return std::sqrt(Dot(v, v));
}

Vector3 Subtract(const Vector3& a, const Vector3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vector3 Cross(const Vector3& a, const Vector3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vector3 Normalise(const Vector3& v) {
    const float length = Length(v);
    return length > 0.0f ? Vector3{v[0] / length, v[1] / length, v[2] / length} : Vector3{};
}

// The C libraries' single-precision functions differ in the last digit; the double-precision ones,
// rounded to single, agree.
float ArcCosine(float value) {
    return static_cast<float>(std::acos(static_cast<double>(value)));
}

float Tangent(float value) {
    return static_cast<float>(std::tan(static_cast<double>(value)));
}

/// The angle between a direction and straight down.
float AngleFromDown(const Vector3& direction) {
    return ArcCosine(-direction[2] / Length(direction));
}

float AngleBetween(const Vector3& u, const Vector3& v) {
    return ArcCosine(Dot(u, v) / (Length(u) * Length(v)));
}

/// Half the vertical field of view, as the scale of clip y. The detour through degrees decides the
/// last bits.
float ProjectionScale(double fovY) {
    const auto degrees = static_cast<float>(fovY * 180.0 / std::numbers::pi);
    const float halfTurns = degrees / 180.0f;
    const auto radians = static_cast<float>(static_cast<double>(halfTurns) * std::numbers::pi);
    return 1.0f / Tangent(radians * 0.5f);
}

Matrix4 Perspective(float scale, float aspect, float nearDistance, float farDistance) {
    Matrix4 m{};
    m[0] = scale / aspect;
    m[5] = scale;
    m[10] = (farDistance + nearDistance) / (nearDistance - farDistance);
    m[11] = -1.0f;
    m[14] = (2.0f * farDistance * nearDistance) / (nearDistance - farDistance);
    return m;
}

Matrix4 Multiply(const Matrix4& a, const Matrix4& b) {
    Matrix4 product{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            float sum = 0.0f;
            for (std::size_t k = 0; k < 4; ++k) {
                sum += a[4 * k + row] * b[4 * column + k];
            }
            product[4 * column + row] = sum;
        }
    }
    return product;
}

}  // namespace

Camera::Camera(double width, double height, double top, double angle) {
    const auto halfWidth = static_cast<float>(width * 0.5);
    const auto windowHeight = static_cast<float>(height);
    const auto stackTop = static_cast<float>(top);
    const auto windowWidth = static_cast<float>(width);

    eye = {halfWidth, static_cast<float>(width * -4.0),
           static_cast<float>(std::tan(angle * std::numbers::pi / 180.0) * (width * 4.0) + top)};

    // The picture reaches from the foot of the front edge to the top of the back edge.
    const double frontAngle = AngleFromDown(Subtract({halfWidth, 0.0f, 0.0f}, eye));
    const double backAngle = AngleFromDown(Subtract({halfWidth, windowHeight, stackTop}, eye));
    const double middleAngle = (backAngle + frontAngle) * 0.5;
    const auto reach = static_cast<float>(std::tan(middleAngle) * static_cast<double>(eye[2]));
    centre = {halfWidth, eye[1] + reach, 0.0f};

    const Vector3 sight = Subtract(centre, eye);
    up = {0.0f, -sight[2], sight[1]};

    const double footAngle =
        AngleBetween(Subtract({0.0f, 0.0f, 0.0f}, eye), Subtract({windowWidth, 0.0f, 0.0f}, eye));
    const double headAngle = AngleBetween(Subtract({0.0f, 0.0f, stackTop}, eye),
                                          Subtract({windowWidth, 0.0f, stackTop}, eye));
    const double fovX = std::max(footAngle, headAngle) * static_cast<double>(1.1f);
    const double fovY = std::max(fovX / 5.0, backAngle - frontAngle);
    aspect = fovX / fovY;

    if (!fixedProjection) {
        const float nearDistance = Length(Subtract({halfWidth, 0.0f, stackTop}, eye)) * 0.95f;
        const float farDistance = Length(Subtract({halfWidth, windowHeight, stackTop}, eye)) * 1.1f;
        projection = Perspective(ProjectionScale(fovY), static_cast<float>(aspect), nearDistance,
                                 farDistance);
    }
    view = LookAt(eye, centre, up);
    transform = Multiply(projection, view);
}

double PixelsPerMicron(const Camera& camera) {
    constexpr double pictureWidth = 1920.0;
    const double distance =
        static_cast<double>(Length(Subtract({camera.eye[0], 0.0f, 0.0f}, camera.eye)));
    return static_cast<double>(camera.projection[0]) / distance * pictureWidth / 2.0;
}

double LeastHeight(const Camera& camera) {
    // A step of the buffer is 2^-24 of the way from the nearest plane to the furthest. It takes a
    // few of them: the transforms in single precision are not that exact.
    constexpr double steps = 8.0;
    constexpr double depthStep = 1.0 / 16777216.0;
    const double far = static_cast<double>(camera.projection[14]) /
                       (static_cast<double>(camera.projection[10]) + 1.0);
    return steps * depthStep * 2.0 * far * far /
           std::abs(static_cast<double>(camera.projection[14]));
}

Matrix4 LookAt(const Vector3& eye, const Vector3& centre, const Vector3& up) {
    const Vector3 forward = Normalise(Subtract(centre, eye));
    const Vector3 back = {-forward[0], -forward[1], -forward[2]};
    const Vector3 right = Normalise(Cross(up, back));
    const Vector3 top = Cross(back, right);
    return {right[0],         top[0],         back[0],         0.0f,   right[1], top[1],
            back[1],          0.0f,           right[2],        top[2], back[2],  0.0f,
            -Dot(right, eye), -Dot(top, eye), -Dot(back, eye), 1.0f};
}

int PictureHeight(const Camera& camera, bool showLegend, int layerCount) {
    const int height = TruncateToI32(1920.0 / camera.aspect);
    return showLegend ? std::max(height, layerCount * 36) : height;
}

}  // namespace zelmo
