#pragma once
// Everything that shines in the street: lamps on posts, garlands of bulbs, traffic, and a lantern
// near the camera. Metres; x to the right, y up from the street, z into the picture.

#include <vector>

#include "scene/SceneMath.h"

namespace scene {

inline constexpr double kWall = 9.0;  // half the street's width

// What a line of sight meets first.
struct Sight {
    Vec3 colour;
    double distance;  // along z; infinite for the sky
};

// The colours of bulbs and neon signs, repeating; any number.
Vec3 bulbColour(int number);

class Lanterns {
public:
    // `pixelAngle` is the size of a pixel at distance 1: small lamps are drawn no smaller.
    explicit Lanterns(double pixelAngle);

    // Replaces `sight` where a lamp, a garland or a post is nearer along `direction`, whose z is 1.
    void look(const Vec3& from, const Vec3& direction, Sight& sight) const;
    // The light that falls on a surface, and that of the sky.
    Vec3 lightAt(const Vec3& place, const Vec3& normal) const;

private:
    // A flat thing across the line of sight.
    struct Lamp {
        Vec3 place;
        double radius;
        Vec3 light;
    };
    struct Post {
        double x, z, top, radius;
    };
    // A wire with coloured bulbs from wall to wall.
    struct Garland {
        double z, height, sag;
        double bulb;  // radius
        int firstColour;
        double wireAt(double x) const;
    };

    void addStreetLamps();
    void addGarlands();
    void addTraffic();
    void addLamp(const Vec3& place, double radius, const Vec3& light);

    void lookAtLamps(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtPosts(const Vec3& from, const Vec3& direction, Sight& sight) const;
    void lookAtGarlands(const Vec3& from, const Vec3& direction, Sight& sight) const;

    double m_pixelAngle;
    std::vector<Lamp> m_lamps;     // everything that shines, near to far
    std::vector<Lamp> m_lighting;  // the few that light walls and street
    std::vector<Post> m_posts;
    std::vector<Garland> m_garlands;
};

}  // namespace scene
