#pragma once

#include <cairo-ft.h>
#include <cairo.h>

#include "values/loaded_library.h"

namespace velora::engine {

/// The functions of cairo, which is loaded when the first page or chart is painted or the first picture is read.
struct CairoLibrary {
    // clang-format off
    LoadedLibrary library{"libcairo.so.2", "Pictures cannot be painted, since cairo cannot be loaded"};

    decltype(cairo_arc)*                                  arc                                  = library.function<decltype(cairo_arc)>("cairo_arc");
    decltype(cairo_arc_negative)*                         arc_negative                         = library.function<decltype(cairo_arc_negative)>("cairo_arc_negative");
    decltype(cairo_clip)*                                 clip                                 = library.function<decltype(cairo_clip)>("cairo_clip");
    decltype(cairo_close_path)*                           close_path                           = library.function<decltype(cairo_close_path)>("cairo_close_path");
    decltype(cairo_create)*                               create                               = library.function<decltype(cairo_create)>("cairo_create");
    decltype(cairo_curve_to)*                             curve_to                             = library.function<decltype(cairo_curve_to)>("cairo_curve_to");
    decltype(cairo_destroy)*                              destroy                              = library.function<decltype(cairo_destroy)>("cairo_destroy");
    decltype(cairo_fill)*                                 fill                                 = library.function<decltype(cairo_fill)>("cairo_fill");
    decltype(cairo_fill_preserve)*                        fill_preserve                        = library.function<decltype(cairo_fill_preserve)>("cairo_fill_preserve");
    decltype(cairo_font_face_destroy)*                    font_face_destroy                    = library.function<decltype(cairo_font_face_destroy)>("cairo_font_face_destroy");
    decltype(cairo_font_face_set_user_data)*              font_face_set_user_data              = library.function<decltype(cairo_font_face_set_user_data)>("cairo_font_face_set_user_data");
    decltype(cairo_ft_font_face_create_for_ft_face)*      ft_font_face_create_for_ft_face      = library.function<decltype(cairo_ft_font_face_create_for_ft_face)>("cairo_ft_font_face_create_for_ft_face");
    decltype(cairo_get_source)*                           get_source                           = library.function<decltype(cairo_get_source)>("cairo_get_source");
    decltype(cairo_image_surface_create)*                 image_surface_create                 = library.function<decltype(cairo_image_surface_create)>("cairo_image_surface_create");
    decltype(cairo_image_surface_create_for_data)*        image_surface_create_for_data        = library.function<decltype(cairo_image_surface_create_for_data)>("cairo_image_surface_create_for_data");
    decltype(cairo_image_surface_create_from_png_stream)* image_surface_create_from_png_stream = library.function<decltype(cairo_image_surface_create_from_png_stream)>("cairo_image_surface_create_from_png_stream");
    decltype(cairo_image_surface_get_data)*               image_surface_get_data               = library.function<decltype(cairo_image_surface_get_data)>("cairo_image_surface_get_data");
    decltype(cairo_image_surface_get_format)*             image_surface_get_format             = library.function<decltype(cairo_image_surface_get_format)>("cairo_image_surface_get_format");
    decltype(cairo_image_surface_get_height)*             image_surface_get_height             = library.function<decltype(cairo_image_surface_get_height)>("cairo_image_surface_get_height");
    decltype(cairo_image_surface_get_stride)*             image_surface_get_stride             = library.function<decltype(cairo_image_surface_get_stride)>("cairo_image_surface_get_stride");
    decltype(cairo_image_surface_get_width)*              image_surface_get_width              = library.function<decltype(cairo_image_surface_get_width)>("cairo_image_surface_get_width");
    decltype(cairo_line_to)*                              line_to                              = library.function<decltype(cairo_line_to)>("cairo_line_to");
    decltype(cairo_move_to)*                              move_to                              = library.function<decltype(cairo_move_to)>("cairo_move_to");
    decltype(cairo_new_path)*                             new_path                             = library.function<decltype(cairo_new_path)>("cairo_new_path");
    decltype(cairo_paint)*                                paint                                = library.function<decltype(cairo_paint)>("cairo_paint");
    decltype(cairo_pattern_set_extend)*                   pattern_set_extend                   = library.function<decltype(cairo_pattern_set_extend)>("cairo_pattern_set_extend");
    decltype(cairo_rectangle)*                            rectangle                            = library.function<decltype(cairo_rectangle)>("cairo_rectangle");
    decltype(cairo_restore)*                              restore                              = library.function<decltype(cairo_restore)>("cairo_restore");
    decltype(cairo_rotate)*                               rotate                               = library.function<decltype(cairo_rotate)>("cairo_rotate");
    decltype(cairo_save)*                                 save                                 = library.function<decltype(cairo_save)>("cairo_save");
    decltype(cairo_scale)*                                scale                                = library.function<decltype(cairo_scale)>("cairo_scale");
    decltype(cairo_set_dash)*                             set_dash                             = library.function<decltype(cairo_set_dash)>("cairo_set_dash");
    decltype(cairo_set_font_face)*                        set_font_face                        = library.function<decltype(cairo_set_font_face)>("cairo_set_font_face");
    decltype(cairo_set_font_size)*                        set_font_size                        = library.function<decltype(cairo_set_font_size)>("cairo_set_font_size");
    decltype(cairo_set_line_width)*                       set_line_width                       = library.function<decltype(cairo_set_line_width)>("cairo_set_line_width");
    decltype(cairo_set_source_rgb)*                       set_source_rgb                       = library.function<decltype(cairo_set_source_rgb)>("cairo_set_source_rgb");
    decltype(cairo_set_source_rgba)*                      set_source_rgba                      = library.function<decltype(cairo_set_source_rgba)>("cairo_set_source_rgba");
    decltype(cairo_set_source_surface)*                   set_source_surface                   = library.function<decltype(cairo_set_source_surface)>("cairo_set_source_surface");
    decltype(cairo_show_glyphs)*                          show_glyphs                          = library.function<decltype(cairo_show_glyphs)>("cairo_show_glyphs");
    decltype(cairo_show_text)*                            show_text                            = library.function<decltype(cairo_show_text)>("cairo_show_text");
    decltype(cairo_stroke)*                               stroke                               = library.function<decltype(cairo_stroke)>("cairo_stroke");
    decltype(cairo_surface_destroy)*                      surface_destroy                      = library.function<decltype(cairo_surface_destroy)>("cairo_surface_destroy");
    decltype(cairo_surface_flush)*                        surface_flush                        = library.function<decltype(cairo_surface_flush)>("cairo_surface_flush");
    decltype(cairo_surface_mark_dirty)*                   surface_mark_dirty                   = library.function<decltype(cairo_surface_mark_dirty)>("cairo_surface_mark_dirty");
    decltype(cairo_surface_status)*                       surface_status                       = library.function<decltype(cairo_surface_status)>("cairo_surface_status");
    decltype(cairo_surface_write_to_png_stream)*          surface_write_to_png_stream          = library.function<decltype(cairo_surface_write_to_png_stream)>("cairo_surface_write_to_png_stream");
    decltype(cairo_text_extents)*                         text_extents                         = library.function<decltype(cairo_text_extents)>("cairo_text_extents");
    decltype(cairo_transform)*                            transform                            = library.function<decltype(cairo_transform)>("cairo_transform");
    decltype(cairo_translate)*                            translate                            = library.function<decltype(cairo_translate)>("cairo_translate");
    // clang-format on
};

/// @throws Fault 429 on a machine without cairo
const CairoLibrary& cairo();

}  // namespace velora::engine
