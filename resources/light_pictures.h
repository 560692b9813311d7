// Pictures of light and air that looks blend over the whole image.
#pragma once

#include "picture.h"

namespace tintwerk::paint {

// Upright ones; a landscape image gets them turned clockwise, so that what is below lies left.
Picture RoseBokeh();    // on black: rose and amber lamps out of focus, most below
Picture WindowLight();  // about middle grey: the evening sun through a window, on a wall
Picture DuskSky();      // indigo above, apricot below, with long clouds

// An old slide.
Picture SlideMount();  // nearly white: cream with corners that fell dark
Picture CrossFade();   // about middle grey: amber on the left, teal on the right
Picture FilmDust();    // on black: dust, hairs and a faint veil

// A faded summer print.
Picture MorningHaze();  // on black: a wide warm haze from the upper left
Picture PrintGrain();   // about middle grey: the texture of matt paper
Picture DustyBeam();    // on black: a beam of light with motes in it

Picture SunHalo();      // about middle grey: the sun in the upper left, its rays and ghosts
Picture ColorLights();  // on black: soft violet and amber light from two corners

}  // namespace tintwerk::paint
