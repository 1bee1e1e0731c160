#include "gl/shaders.h"

#include <algorithm>
#include <array>
#include <cstddef>

// All shading is in linear light, but where a shader says otherwise.
namespace Bundled {

namespace {

// The texts one behind the other.
template <std::size_t... Sizes>
constexpr auto join(const char (&... texts)[Sizes]) {
    std::array<char, (Sizes + ...) - sizeof...(Sizes) + 1> joined{};
    char* end = joined.data();
    ((end = std::copy_n(texts, Sizes - 1, end)), ...);
    return joined;
}

// What draws meshes reads these, and the same steps lead to the same depths in all passes.
constexpr char kMeshVertexInput[] = R"(
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 2) in vec2 st;
layout(location = 3) in vec3 color;
// Per instance: the rows of the local-to-world matrix for row vectors.
layout(location = 4) in vec3 row0;
layout(location = 5) in vec3 row1;
layout(location = 6) in vec3 row2;
layout(location = 7) in vec3 row3;
layout(location = 8) in float selected;
layout(location = 9) in uint id;

uniform mat4 worldToView;
uniform mat4 viewToClip;

vec4 positionInView() {
    return worldToView * vec4(mat3(row0, row1, row2) * position + row3, 1.0);
}

// Of no particular length. Cofactors carry normals through any transform, singular ones included; a
// mirrored one turns them round.
vec3 normalInView() {
    mat3 cofactors = mat3(cross(row1, row2), cross(row2, row0), cross(row0, row1));
    return mat3(worldToView) * (cofactors * normal);
}
)";

// What shades meshes: everything stands in view space.
constexpr char kMeshLight[] = R"(
const vec3 keyDirection = normalize(vec3(-0.60, 0.70, 0.55));
const vec3 fillDirection = normalize(vec3(0.85, 0.10, 0.45));

// Soft light from a direction, reaching a little round the edge of the shadow.
float wrapped(vec3 n, vec3 light, float wrap) {
    return max(0.0, (dot(n, light) + wrap) / (1.0 + wrap));
}

// The light of the sky, of the key light and of the fill light.
vec3 lightOn(vec3 n, vec3 up) {
    return mix(vec3(0.075, 0.070, 0.065), vec3(0.190, 0.207, 0.232), 0.5 + 0.5 * dot(n, up)) +
           vec3(0.800, 0.770, 0.725) * wrapped(n, keyDirection, 0.18) +
           vec3(0.115, 0.132, 0.160) * wrapped(n, fillDirection, 0.4);
}

// Towards the eye; `perspective` is 1 for a perspective projection, 0 for an orthographic one.
vec3 directionToEye(vec3 position, float perspective) {
    return normalize(mix(vec3(0.0, 0.0, 1.0), -position, perspective));
}
)";

// The fine picture's light on what its vertex shader passes.
constexpr char kMeshShade[] = R"(
in vec3 viewPosition;
in vec3 viewNormal;

uniform mat4 worldToView;
uniform float perspective;
// 1 for polygons, 0 for lines and points, which have no surface to light.
uniform int hasSurface;

// Multiplied out: software renderers take long over pow().
float pow5(float x) {
    return (x * x) * (x * x) * x;
}

float pow40(float x) {
    float x5 = pow5(x);
    float x20 = (x5 * x5) * (x5 * x5);
    return x20 * x20;
}

// Bends what would clip: bright surfaces keep their modelling and their hue.
vec3 shoulder(vec3 light) {
    const float knee = 0.7;
    const float room = 1.0 - knee;
    float most = max(light.r, max(light.g, light.b));
    float bent = knee + room * (1.0 - exp((knee - most) / room));
    return most > knee ? light * (bent / most) : light;
}

vec3 shade(vec3 albedo) {
    if (hasSurface == 0) {
        return albedo;
    }
    vec3 toEye = directionToEye(viewPosition, perspective);
    // The side that is seen decides which way the normal points, whatever the winding, the given
    // normals and mirroring transforms say.
    vec3 face = cross(dFdx(viewPosition), dFdy(viewPosition));
    face = dot(face, toEye) < 0.0 ? -face : face;
    vec3 n = dot(viewNormal, viewNormal) > 0.0 ? viewNormal : face;
    n = normalize(dot(n, face) < 0.0 ? -n : n);

    vec3 up = normalize(mat3(worldToView) * vec3(0.0, 1.0, 0.0));
    const vec3 rimDirection = normalize(vec3(0.35, 0.55, -0.80));
    vec3 light = lightOn(n, up) + vec3(0.160, 0.165, 0.180) * wrapped(n, rimDirection, 0.0);

    vec3 halfway = normalize(keyDirection + toEye);
    float gloss = pow40(max(0.0, dot(n, halfway)));
    float grazing = pow5(1.0 - max(0.0, dot(n, toEye)));
    return shoulder(albedo * light + vec3(0.07) * gloss + vec3(0.05, 0.055, 0.065) * grazing);
}
)";

constexpr char kLeaveHoles[] = R"(
in vec2 texturePlace;
uniform sampler2D surfaceTexture;
void leaveHoles() {
    if (texture(surfaceTexture, texturePlace).a < 0.5) {
        discard;
    }
}
)";

constexpr char kIdColor[] = R"(
flat in uint instanceId;
out vec4 color;
vec4 idColor() {
    return vec4(float(instanceId >> 24u), float((instanceId >> 16u) & 255u),
                float((instanceId >> 8u) & 255u), float(instanceId & 255u)) / 255.0;
}
)";

} // namespace

const char* const kFullscreenVertexShader = R"(
void main() {
    vec2 place = vec2((gl_VertexID << 1) & 2, gl_VertexID & 2);
    gl_Position = vec4(place * 2.0 - 1.0, 1.0, 1.0);
}
)";

const char* const kEncodeFragmentShader = R"(
uniform sampler2DMS picture;
out vec4 encoded;

// Interleaved gradient noise: hides the steps of eight bits in smooth gradients.
float dither(vec2 pixel) {
    return fract(52.9829189 * fract(dot(pixel, vec2(0.06711056, 0.00583715)))) - 0.5;
}

void main() {
    vec3 sum = vec3(0.0);
    for (int i = 0; i < samples; ++i) {
        sum += texelFetch(picture, ivec2(gl_FragCoord.xy), i).rgb;
    }
    vec3 linear = clamp(sum / float(samples), 0.0, 1.0);
    vec3 low = linear * 12.92;
    vec3 high = 1.055 * pow(linear, vec3(1.0 / 2.4)) - 0.055;
    vec3 srgb = mix(high, low, vec3(lessThan(linear, vec3(0.0031308))));
    encoded = vec4(srgb + dither(gl_FragCoord.xy) / 255.0, 1.0);
}
)";

const char* const kBackgroundFragmentShader = R"(
uniform vec2 pixelSize;
out vec4 color;
void main() {
    vec2 place = gl_FragCoord.xy * pixelSize;
    const vec3 top = vec3(0.205, 0.235, 0.275);
    const vec3 bottom = vec3(0.040, 0.045, 0.053);
    float height = smoothstep(-0.1, 1.1, place.y);
    // A little light behind the middle lifts the model off the background.
    vec2 offset = (place - vec2(0.5, 0.55)) * vec2(1.0, 0.8);
    float glow = exp(-5.0 * dot(offset, offset));
    color = vec4(mix(bottom, top, height) * (0.85 + 0.4 * glow), 1.0);
}
)";

constexpr auto kMeshVertexText = join(kMeshVertexInput, R"(
out vec3 viewPosition;
out vec3 viewNormal;
out vec2 texturePlace;
out vec3 vertexColor;
flat out float isSelected;

void main() {
    vec4 view = positionInView();
    viewPosition = view.xyz;
    viewNormal = normalInView();
    texturePlace = st;
    vertexColor = color;
    isSelected = selected;
    gl_Position = viewToClip * view;
}
)");
const char* const kMeshVertexShader = kMeshVertexText.data();

constexpr auto kMeshFragmentText = join(kMeshLight, kMeshShade, R"(
in vec3 vertexColor;
uniform vec3 baseColor;
uniform float opacity;
out vec4 color;
void main() {
    color = vec4(shade(baseColor * vertexColor), opacity);
}
)");
const char* const kMeshFragmentShader = kMeshFragmentText.data();

constexpr auto kTexturedMeshFragmentText = join(kMeshLight, kMeshShade, R"(
in vec2 texturePlace;
in vec3 vertexColor;
uniform vec3 baseColor;
uniform float opacity;
uniform sampler2D surfaceTexture;
out vec4 color;
void main() {
    vec4 texel = texture(surfaceTexture, texturePlace);
    float alpha = opacity * texel.a;
    if (alpha < 0.004) {
        discard;
    }
    color = vec4(shade(baseColor * vertexColor * texel.rgb), alpha);
}
)");
const char* const kTexturedMeshFragmentShader = kTexturedMeshFragmentText.data();

const char* const kWireFragmentShader = R"(
in vec3 vertexColor;
flat in float isSelected;
uniform vec3 baseColor;
// 1 for edges on the surface that they bound.
uniform int onSurface;
out vec4 color;
void main() {
    vec3 own = baseColor * vertexColor;
    float light = dot(own, vec3(0.2126, 0.7152, 0.0722));
    vec3 shade = light > 0.04 ? own * 0.10 : own + 0.20;
    // Light enough to be seen before any background.
    vec3 alone = 0.8 * own + max(0.0, 0.40 - 0.8 * light);
    color = vec4(mix(onSurface == 1 ? shade : alone, vec3(1.0, 0.42, 0.05), isSelected), 1.0);
}
)";

const char* const kMaskFragmentShader = R"(
out vec4 color;
void main() {
    color = vec4(1.0);
}
)";

constexpr auto kHoleyMaskFragmentText = join(kLeaveHoles, R"(
out vec4 color;
void main() {
    leaveHoles();
    color = vec4(1.0);
}
)");
const char* const kHoleyMaskFragmentShader = kHoleyMaskFragmentText.data();

const char* const kOutlineColorFunction = R"(
// What an outline shows of a pixel, from what is near: covered at all (`rim`, and for the bright
// line `line`), by what nothing hides (`seen`), not covered (`edge`). All from 0 to 1.
vec4 outlineColor(float inside, float line, float rim, float seen, float edge) {
    float shown = mix(0.45, 1.0, seen / max(rim, 1e-3));
    line *= (1.0 - inside) * shown;
    // Dark on both sides, so that the line stands out from what it surrounds as well.
    rim = (0.80 * rim * (1.0 - inside) + 0.50 * edge * inside) * shown * (1.0 - line);
    float alpha = line + rim;
    return vec4(vec3(1.0, 0.50, 0.06) * (line / max(alpha, 1e-3)), alpha);
}
)";

const char* const kOutlineFragmentShader = R"(
// How much of each pixel is covered, red: at all, green: by what nothing hides. Known from the
// pixel `first` to `last`.
uniform sampler2D mask;
uniform ivec2 first;
uniform ivec2 last;
out vec4 color;
void main() {
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    float inside = texelFetch(mask, pixel, 0).r;
    // Most pixels are well inside, where nothing is drawn.
    float around = inside;
    for (int i = 0; i < 9; ++i) {
        ivec2 there = pixel + 3 * ivec2(i % 3 - 1, i / 3 - 1);
        around = min(around, texelFetch(mask, clamp(there, first, last), 0).r);
    }
    if (around == 1.0) {
        discard;
    }
    float line = 0.0;
    float seen = 0.0;
    float rim = 0.0;
    float edge = 0.0;
    for (int y = -3; y <= 3; ++y) {
        for (int x = -3; x <= 3; ++x) {
            float distance = length(vec2(x, y));
            if (distance > 3.9) {
                continue;
            }
            vec2 cover = texelFetch(mask, clamp(pixel + ivec2(x, y), first, last), 0).rg;
            float near = clamp(3.9 - distance, 0.0, 1.0);
            rim = max(rim, cover.r * near);
            seen = max(seen, cover.g * near);
            line = max(line, cover.r * clamp(2.6 - distance, 0.0, 1.0));
            edge = max(edge, (1.0 - cover.r) * clamp(1.8 - distance, 0.0, 1.0));
        }
    }
    color = outlineColor(inside, line, rim, seen, edge);
    if (color.a < 0.004) {
        discard;
    }
}
)";

const char* const kRowDistanceFragmentShader = R"(
uniform sampler2D mask;
uniform ivec2 first;
uniform ivec2 last;
out vec4 distances;
void main() {
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    vec3 nearest = vec3(8.0);
    for (int x = -3; x <= 3; ++x) {
        int there = clamp(pixel.x + x, first.x, last.x);
        vec2 cover = texelFetch(mask, ivec2(there, pixel.y), 0).rg;
        nearest = min(nearest, float(abs(x)) + 8.0 * vec3(1.0 - cover, cover.r));
    }
    distances = vec4(nearest / 255.0, 1.0);
}
)";

const char* const kDraftOutlineFragmentShader = R"(
uniform sampler2D distances;
uniform ivec2 first;
uniform ivec2 last;
out vec4 color;
void main() {
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    vec3 squares = vec3(99.0);
    for (int y = -3; y <= 3; ++y) {
        int there = clamp(pixel.y + y, first.y, last.y);
        vec3 inRow = 255.0 * texelFetch(distances, ivec2(pixel.x, there), 0).rgb;
        squares = min(squares, inRow * inRow + float(y * y));
    }
    vec3 nearest = sqrt(squares);
    color = outlineColor(nearest.r < 0.5 ? 1.0 : 0.0, clamp(2.6 - nearest.r, 0.0, 1.0),
                         clamp(3.9 - nearest.r, 0.0, 1.0), clamp(3.9 - nearest.g, 0.0, 1.0),
                         clamp(1.8 - nearest.b, 0.0, 1.0));
    if (color.a < 0.004) {
        discard;
    }
}
)";

constexpr auto kDraftVertexText = join(kMeshVertexInput, kMeshLight, R"(
uniform float perspective;
uniform vec3 baseColor;
uniform int hasSurface;
// 1 where the colours are to be sRGB already.
uniform int isEncoded;

out vec3 lit;
out vec2 texturePlace;

// By square roots, which are cheap: less than a third of one of 255 steps away.
vec3 encode(vec3 linear) {
    vec3 a = sqrt(max(linear, 0.0));
    vec3 b = sqrt(a);
    vec3 high = 0.662002687 * a + 0.684122060 * b - 0.323583601 * sqrt(b) - 0.0225411470 * linear;
    return max(min(12.92 * linear, 0.0404), high);
}

void main() {
    vec4 view = positionInView();
    gl_Position = viewToClip * view;
    texturePlace = st;
    vec3 light = vec3(1.0);
    if (hasSurface == 1) {
        vec3 n = normalize(normalInView());
        // A corner just behind the outline of something round faces away a little, and is still on
        // its front side.
        vec3 toEye = directionToEye(view.xyz, perspective);
        n = dot(n, toEye) < -0.35 ? -n : n;
        light = lightOn(n, worldToView[1].xyz);
    }
    lit = baseColor * color * light;
    if (isEncoded == 1) {
        lit = encode(lit);
    }
}
)");
const char* const kDraftVertexShader = kDraftVertexText.data();

const char* const kDraftFragmentShader = R"(
in vec3 lit;
uniform float opacity;
out vec4 color;
void main() {
    color = vec4(lit, opacity);
}
)";

const char* const kTexturedDraftFragmentShader = R"(
in vec3 lit;
in vec2 texturePlace;
uniform float opacity;
uniform sampler2D surfaceTexture;
out vec4 color;
void main() {
    vec4 texel = texture(surfaceTexture, texturePlace);
    // Half of the samples a pixel would have it or not; a draft has one.
    if (texel.a * opacity < min(0.5, 0.5 * opacity)) {
        discard;
    }
    color = vec4(lit * texel.rgb, opacity * texel.a);
}
)";

constexpr auto kIdVertexText = join(kMeshVertexInput, R"(
out vec2 texturePlace;
flat out uint instanceId;

void main() {
    gl_Position = viewToClip * positionInView();
    texturePlace = st;
    instanceId = id;
}
)");
const char* const kIdVertexShader = kIdVertexText.data();

constexpr auto kIdFragmentText = join(kIdColor, R"(
void main() {
    color = idColor();
}
)");
const char* const kIdFragmentShader = kIdFragmentText.data();

constexpr auto kHoleyIdFragmentText = join(kLeaveHoles, kIdColor, R"(
void main() {
    leaveHoles();
    color = idColor();
}
)");
const char* const kHoleyIdFragmentShader = kHoleyIdFragmentText.data();

const char* const kGridVertexShader = R"(
uniform mat4 worldToView;
uniform mat4 viewToClip;
uniform vec3 centre;
uniform float radius;
out vec2 ground;
void main() {
    vec2 corner = vec2(gl_VertexID & 1, gl_VertexID >> 1) * 2.0 - 1.0;
    ground = centre.xz + corner * radius;
    gl_Position = viewToClip * (worldToView * vec4(ground.x, centre.y, ground.y, 1.0));
}
)";

const char* const kGridFragmentShader = R"(
uniform vec3 centre;
uniform vec3 eye;
uniform float perspective;
uniform float radius;
uniform float spacing;
in vec2 ground;
out vec4 color;

// How much of the pixel a grid of lines covers. Where lines stand closer than pixels, it fades to
// nothing instead of shimmering.
float lines(vec2 place, vec2 footprint, float step, float widthPx) {
    vec2 cell = place / step;
    vec2 pixel = max(footprint / step, vec2(1e-9));
    vec2 distancePx = abs(fract(cell - 0.5) - 0.5) / pixel;
    vec2 cover = clamp(0.5 + 0.5 * widthPx - distancePx, 0.0, 1.0);
    cover *= 1.0 - smoothstep(vec2(0.15), vec2(0.5), pixel);
    return max(cover.x, cover.y);
}

float axis(float place, float footprint, float widthPx) {
    return clamp(0.5 + 0.5 * widthPx - abs(place) / max(footprint, 1e-9), 0.0, 1.0);
}

void main() {
    vec2 footprint = fwidth(ground);
    float minor = lines(ground, footprint, spacing, 1.0);
    float major = lines(ground, footprint, spacing * 10.0, 1.4);
    float cover = max(0.11 * minor, 0.26 * major);
    vec3 tint = vec3(0.42, 0.45, 0.50);

    float alongX = axis(ground.y, footprint.y, 1.8);
    float alongZ = axis(ground.x, footprint.x, 1.8);
    tint = mix(tint, vec3(0.62, 0.10, 0.10), alongX);
    tint = mix(tint, vec3(0.10, 0.22, 0.66), alongZ);
    cover = max(cover, 0.65 * max(alongX, alongZ));

    float fade = 1.0 - smoothstep(0.25, 1.0, length(ground - centre.xz) / radius);
    // Lines that are seen from the side run together.
    vec3 toEye = normalize(eye - vec3(ground.x, centre.y, ground.y));
    float slope = mix(1.0, smoothstep(0.0, 0.12, abs(toEye.y)), perspective);
    color = vec4(tint, cover * fade * slope);
    if (color.a < 0.002) {
        discard;
    }
}
)";

} // namespace Bundled
