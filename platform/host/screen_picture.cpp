#include "host/screen_picture.h"

#include <Ecore_Evas.h>

#include <fstream>

namespace {

// Some displays draw in a thread of their own.
void render(Ecore_Evas* screen, Evas* canvas) {
    ecore_evas_manual_render(screen);
    evas_sync(canvas);
}

}  // namespace

namespace host::screen {

bool savePicture(Evas_Object* window, const std::string& file) {
    // Asked first: the toolkit's own answer is an error in the log.
    if (!std::ofstream(file)) return false;
    Evas* const canvas = evas_object_evas_get(window);
    Ecore_Evas* const screen = ecore_evas_ecore_evas_get(canvas);
    int width = 0;
    int height = 0;
    evas_output_viewport_get(canvas, nullptr, nullptr, &width, &height);
    render(screen, canvas);
    // A snapshot object shows what lies below it: put on top, that is everything.
    Evas_Object* const snapshot = evas_object_image_filled_add(canvas);
    evas_object_image_snapshot_set(snapshot, EINA_TRUE);
    evas_object_geometry_set(snapshot, 0, 0, width, height);
    evas_object_layer_set(snapshot, EVAS_LAYER_MAX);
    evas_object_pass_events_set(snapshot, EINA_TRUE);
    evas_object_show(snapshot);
    // It takes in only what is drawn anew.
    evas_damage_rectangle_add(canvas, 0, 0, width, height);
    render(screen, canvas);
    const bool saved = evas_object_image_save(snapshot, file.c_str(), nullptr, "compress=1");
    evas_object_del(snapshot);
    return saved;
}

}  // namespace host::screen
