#shader vertex
#version 330 compatibility

layout(location = 0) in vec3 position; // micrometres
layout(location = 1) in vec3 normal;   // zero: a marker has no direction
layout(location = 2) in float weight;  // opacity

uniform mat4 transform;

out float opacity;

const float pointSize = 16.0; // pixels
const float lift = 0.02;      // of the width that the view has at the marker

void main() {
    opacity = weight;
    gl_PointSize = pointSize;
    gl_Position = transform * vec4(position, 1.0);

    // A marker lies on the surface, which would cut off its lower half. Its depth is therefore
    // taken from a little nearer to the eye: in a perspective view, depth is a + b / distance, and
    // the rows of the transform tell a and b.
    vec3 across = vec3(transform[0].x, transform[1].x, transform[2].x);
    vec3 depth = vec3(transform[0].z, transform[1].z, transform[2].z);
    vec3 away = vec3(transform[0].w, transform[1].w, transform[2].w);
    if (dot(away, away) > 0.0) {
        float distance = gl_Position.w;
        float viewWidth = 2.0 * distance / length(across);
        float a = dot(depth, away) / dot(away, away);
        float b = gl_Position.z - a * distance;
        gl_Position.z = (a + b / (distance - lift * viewWidth)) * distance;
    }
}

#shader fragment
#version 330 compatibility

in float opacity;
out vec4 pixel;

void main() {
    float fromCentre = length(gl_PointCoord - vec2(0.5)) * 16.0;
    float cover = clamp(8.0 - fromCentre, 0.0, 1.0);
    float rim = clamp(fromCentre - 4.5, 0.0, 1.0);
    if (cover <= 0.0) {
        discard;
    }
    pixel = vec4(mix(vec3(1.0), vec3(0.1), rim), cover * opacity);
}
