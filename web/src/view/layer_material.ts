import { FrontSide, ShaderMaterial, Vector2, Vector3 } from "three";

// The light is that of the pictures (assets/surface.shader): from the sky, from a lamp far in front,
// and from the left. Here a triangle's normal comes from its own pixels.
const vertexShader = `
varying vec3 place;
void main() {
    place = position;
    gl_Position = projectionMatrix * modelViewMatrix * vec4(position, 1.0);
}`;

const fragmentShader = `
uniform vec3 color;
uniform float alpha;
uniform float stretch;
uniform vec2 keptFrom;
uniform vec2 keptTo;
varying vec3 place;
void main() {
#ifdef CUT
    if (any(lessThan(place.xy, keptFrom)) || any(greaterThan(place.xy, keptTo))) {
        discard;
    }
#endif
    vec3 drawn = vec3(place.xy, place.z * stretch);
    vec3 n = normalize(cross(dFdx(drawn), dFdy(drawn)));
    // What faces down is lit from above as well, but a little weaker.
    float under = n.z < -0.02 ? 1.0 : 0.0;
    n.z = abs(n.z);
    vec3 toLight = normalize(vec3(0.0, -1.0, 0.9));
    float sky = 0.5 + 0.5 * n.z;
    float lamp = max(dot(n, toLight), 0.0);
    float shade = 0.355 + 0.43 * sky + 0.27 * lamp - 0.08 * n.x - 0.10 * under;
    float darkness = 1.0 - max(max(color.r, color.g), color.b);
    vec3 sheen = vec3(0.27 * darkness * darkness * darkness * shade);
    gl_FragColor = vec4((color + sheen) * shade, alpha);
}`;

/** What all layers share: the kept part of the window, in micrometres, and the stretch of heights. */
export interface SharedUniforms {
    keptFrom: { value: Vector2 };
    keptTo: { value: Vector2 };
    stretch: { value: number };
}

export function makeSharedUniforms(): SharedUniforms {
    return {
        keptFrom: { value: new Vector2() },
        keptTo: { value: new Vector2() },
        stretch: { value: 1 },
    };
}

/** What a layer's surfaces are drawn with. `color` and `alpha` are 0 to 1; opaque is an alpha of 1. */
export function makeLayerMaterial(
    color: [number, number, number],
    alpha: number,
    shared: SharedUniforms,
    isCut: boolean,
): ShaderMaterial {
    return new ShaderMaterial({
        vertexShader,
        fragmentShader,
        uniforms: { color: { value: new Vector3(...color) }, alpha: { value: alpha }, ...shared },
        defines: isCut ? { CUT: "" } : {},
        side: FrontSide,
        transparent: alpha < 1,
        // Translucent layers are drawn from the far ones to the near ones and hide nothing.
        depthWrite: alpha >= 1,
    });
}
