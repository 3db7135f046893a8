#shader vertex
#version 330 compatibility

// zelmo: hidden parts may be left out
//
// By this line a shader lets the program draw less than whole meshes. It promises that
//   - a triangle lies where the transform takes it, so gl_Position is made of the position alone,
//     in the same way for all layers;
//   - a fragment keeps its depth and is never discarded;
//   - the opacity of every fragment is alpha.
// Without this line all triangles of all layers are drawn, with blending.

layout(location = 0) in vec3 position; // micrometres
layout(location = 1) in vec3 normal;   // of any length

uniform mat4 transform;
uniform vec3 lightPos;
uniform vec3 lightColor;
uniform vec2 viewRight; // what lies to the right in the view, across the window
uniform vec3 color;

// A mesh is so fine that its corners are lit in place of its pixels.
noperspective out vec3 litColor;

void main() {
    // The largest component goes first: the square of a very short or long normal has no number. A
    // normal without a length stands for a flat place.
    float largest = max(max(abs(normal.x), abs(normal.y)), abs(normal.z));
    vec3 n = largest > 0.0 ? normalize(normal / largest) : vec3(0.0, 0.0, 1.0);
    // Lower surfaces carry the inverted normals of the upper ones: they are lit like those, from
    // above, but a little weaker.
    float under = n.z < 0.0 ? 1.0 : 0.0;
    n = under > 0.0 ? -n : n;
    // The light goes with the eye around the window, so that the sides that face the eye are lit as
    // the front is from there.
    n.xy = vec2(n.x * viewRight.x + n.y * viewRight.y, n.y * viewRight.x - n.x * viewRight.y);
    // The lamp is far away: all places see it as the middle of the front edge does.
    vec3 toLight = normalize(vec3(0.0, lightPos.yz));

    // Light from the sky, from the lamp, and from the left, so that sides that face left and right
    // differ. A flat top comes out close to the pure colour.
    float sky = 0.5 + 0.5 * n.z;
    float lamp = max(dot(n, toLight), 0.0);
    float shade = 0.355 + 0.43 * sky + 0.27 * lamp - 0.08 * n.x - 0.10 * under;

    // Colours near black take up little light: a grey sheen keeps their steps visible.
    float darkness = 1.0 - max(max(color.r, color.g), color.b);
    vec3 sheen = vec3(0.27 * darkness * darkness * darkness * shade);

    litColor = (color + sheen) * shade * lightColor;
    gl_Position = transform * vec4(position, 1.0);
}

#shader fragment
#version 330 compatibility

noperspective in vec3 litColor;

uniform float alpha;

out vec4 pixel;

void main() {
    pixel = vec4(litColor, alpha);
}
