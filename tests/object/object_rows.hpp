#pragma once

#include <cstdint>

#include "ztdecode.h"

// What the classes and their properties are: id, name, type and, for an indexed property, the number of
// elements.

namespace ztdecode::testing {

struct ClassRow {
    std::uint8_t opcode;
    const char* name;
    const ztdecode_property_record* table;
    const char* properties;
};

// clang-format off

#define WIDGET_HEAD \
    "0x00 objectid uint16, 0x24 anchorid uint16, 0x25 grid uint8, 0x26 x uint8, 0x27 y uint8, 0x12 w uint8, " \
    "0x13 h uint8, 0x28 visible BOOL, 0x46 hoffset int8, 0x47 voffset int8, 0x68 cycling_time uint16, "

inline const ClassRow class_rows[] = {
    {0x00, "context", Tab_context,
     "0x00 objectid uint16, 0x01 ownership uint8"},
    {0x01, "terminal", Tab_terminal,
     "0x00 objectid uint16, 0x02 reset uint8, 0x03 mtu uint16, 0x04 negative_ack BOOL, "
     "0x5F CS_idle_state BOOL, 0x60 PS_idle_state BOOL, 0x51 session_timeout uint16, "
     "0x58 term_type uint8, 0x59 link_type uint8, 0x62 serialnum \"UTF8\", "
     "0x63 hardversion \"UTF8\", 0x64 softversion \"UTF8\", 0x65 rom_size uint32, "
     "0x66 ram_size uint32, 0x67 reset_cause uint32, 0x69 arp_spoofing uint32, "
     "0x73 fetch_timeout uint16, 0x75 use_customisation BOOL, 0x46 custversion \"UTF8\", "
     "0x47 L10Nversion \"UTF8\", 0x53 ringings_count uint8, 0x7A ime_lock BOOL, "
     "0x7D binary_suffix \"UTF8\", 0x7E binary_count uint8, 0x7F SIPCversion \"UTF8\", "
     "0x16 system_id uint8"},
    {0x02, "keyboard", Tab_keyboard,
     "0x00 objectid uint16, 0x05 type uint8, 0x06 help_timeout uint16, "
     "0x07 longpress uint16, 0x49 shortpress uint16, 0x4A autorepeat uint16, "
     "0x4B repetition uint16, 0x08 count uint16, 0x80 dflt uint16 [78], "
     "0x81 shift uint16 [78], 0x82 alt uint16 [78]"},
    {0x03, "audioconfig", Tab_audioconfig,
     "0x00 objectid uint16, 0x3C qos_ticket BOOL, 0x1D enable BOOL, "
     "0x98 delay_max_handset uint32 [3], 0x99 delay_max_handsfree uint32 [3], "
     "0x9A delay_tx uint32 [2], 0x9B delay_rx uint32 [2]"},
    {0x05, "leds", Tab_leds,
     "0x00 objectid uint16, 0x10 onoff BOOL, 0x08 count uint8, 0x86 Dmode uint8 [9], "
     "0x87 color uint8 [9]"},
    {0x06, "screen", Tab_screen,
     WIDGET_HEAD "0x05 type uint8, 0x11 bpp uint8, 0x14 contrast uint8, 0x15 clearscreen BOOL, "
     "0x5C backlight_timeout uint32, 0x5D screensaver_timeout uint32, "
     "0x6E widgets_size BOOL, 0x96 Dcode uint16 [20], 0x97 Ddata \"UTF8\" [20]"},
    {0x07, "date", Tab_date,
     "0x00 objectid uint16, 0x18 year uint16, 0x19 month uint8, 0x1A day uint8, "
     "0x13 h uint8, 0x1B m uint8, 0x1C s uint8, 0x93 today \"UTF8\" [2], "
     "0x94 tomorrow \"UTF8\" [2]"},
    {0x08, "AOMV", Tab_AOMV,
     "0x00 objectid uint16, 0x08 count uint8, 0x6C all_icons_off BOOL, "
     "0x88 Dtype uint8 [72], 0x89 Dicon uint16 [72], 0x8A Dlabel \"UTF8\" [72], "
     "0x85 Dvalue \"UTF8\" [72], 0x8B Downership uint8 [72], 0x8C Denable BOOL [72]"},
    {0x09, "bluetooth", Tab_bluetooth,
     "0x00 objectid uint16, 0x1E address \"UTF8\", 0x21 name \"UTF8\", 0x3E State uint8, "
     "0x53 bth_beep BOOL, 0x61 bonded_devices BOOL, 0x71 bth_ringing BOOL"},
    {0x0C, "callstate", Tab_callstate,
     "0x00 objectid uint16, 0x1D enable BOOL, 0x08 count uint8, 0x8D Dstate uint8 [120], "
     "0x8E Dname \"UTF8\" [120], 0x8F number \"UTF8\" [120]"},
    {0x0D, "resource", Tab_resource,
     "0x00 objectid uint16, 0x1E address \"UTF8\", 0x1F port uint16, 0x20 protocol uint8, "
     "0x21 name \"UTF8\""},
    {0x0E, "widgets_default", Tab_widgets_default,
     "0x00 objectid uint16, 0x22 checked \"UTF8\", 0x23 unchecked \"UTF8\""},
    {0x80, "framebox", Tab_framebox,
     WIDGET_HEAD "0x29 border uint8, 0x35 background uint8, 0x4C vsplit uint8, 0x5B autospread BOOL, "
     "0x70 frame_type uint8, 0x5E cycling BOOL"},
    {0x81, "tabbox", Tab_tabbox,
     WIDGET_HEAD "0x2A fontid uint8, 0x2B active uint8, 0x08 count uint8, 0x89 Dicon uint16 [16], "
     "0x8A Dlabel \"UTF8\" [16], 0x85 Dvalue \"UTF8\" [16], 0x17 advanced_mode uint8"},
    {0x82, "listbox", Tab_listbox,
     WIDGET_HEAD "0x2A fontid uint8, 0x2C halign uint8, 0x2D valign uint8, 0x2F mode uint8, "
     "0x2B active uint8, 0x6F list_type uint8, 0x30 showevent BOOL, 0x31 showactive BOOL, "
     "0x5A circular BOOL, 0x4E realcount uint8, 0x4F start uint8, 0x08 count uint8, "
     "0x29 border uint8, 0x17 advanced_mode uint8, 0x6B disablelongpress BOOL, "
     "0x89 Dicon uint16 [32], 0x8A Dlabel \"UTF8\" [32], 0x85 Dvalue \"UTF8\" [32], "
     "0x8B Downership uint8 [32], 0x8C Denable BOOL [32]"},
    {0x83, "actionlistbox", Tab_actionlistbox,
     WIDGET_HEAD "0x2A fontid uint8, 0x2B active uint8, 0x08 count uint8, 0x29 border uint8, "
     "0x2F mode uint8, 0x42 timeout uint32, 0x8A Dlabel \"UTF8\" [16], "
     "0x85 Dvalue \"UTF8\" [16], 0x8B Downership uint8 [16]"},
    {0x84, "textbox", Tab_textbox,
     WIDGET_HEAD "0x2A fontid uint8, 0x2C halign uint8, 0x2D valign uint8, 0x34 foreground uint8, "
     "0x35 background uint8, 0x36 icon uint16, 0x37 label \"UTF8\", 0x48 append \"UTF8\", "
     "0x79 overwrite \"UTF8\", 0x2F mode uint8, 0x3A cursor uint16"},
    {0x85, "actionbox", Tab_actionbox,
     WIDGET_HEAD "0x2A fontid uint8, 0x36 icon uint16, 0x37 label \"UTF8\", 0x38 value \"UTF8\", "
     "0x01 ownership uint8"},
    {0x86, "inputbox", Tab_inputbox,
     WIDGET_HEAD "0x2A fontid uint8, 0x2C halign uint8, 0x2D valign uint8, 0x34 foreground uint8, "
     "0x35 background uint8, 0x36 icon uint16, 0x37 label \"UTF8\", 0x38 value \"UTF8\", "
     "0x1D enable BOOL, 0x39 password BOOL, 0x29 border uint8, 0x2E size uint8, "
     "0x3B mask \"UTF8\", 0x3D focus BOOL, 0x6A inputborder BOOL, 0x74 mask_subst uint16, "
     "0x08 count uint16, 0x48 append \"UTF8\", 0x3A cursor uint16"},
    {0x87, "checkbox", Tab_checkbox,
     WIDGET_HEAD "0x2A fontid uint8, 0x2C halign uint8, 0x2D valign uint8, 0x34 foreground uint8, "
     "0x35 background uint8, 0x36 icon uint16, 0x37 label \"UTF8\", 0x1D enable BOOL, "
     "0x3E State BOOL"},
    {0x88, "datebox", Tab_datebox,
     WIDGET_HEAD "0x2A fontid uint8, 0x2C halign uint8, 0x2D valign uint8, 0x34 foreground uint8, "
     "0x35 background uint8, 0x3F format \"UTF8\""},
    {0x89, "timerbox", Tab_timerbox,
     WIDGET_HEAD "0x2A fontid uint8, 0x2C halign uint8, 0x2D valign uint8, 0x34 foreground uint8, "
     "0x35 background uint8, 0x36 icon uint16, 0x37 label \"UTF8\", 0x3E State uint8, "
     "0x40 incdec int8, 0x3F format \"UTF8\", 0x2F mode int8, 0x38 value uint32, "
     "0x41 value_notify uint32"},
    {0x8A, "popupbox", Tab_popupbox,
     WIDGET_HEAD "0x50 modal BOOL, 0x2F mode uint8, 0x42 timeout uint32, 0x29 border uint8"},
    {0x8B, "dialogbox", Tab_dialogbox,
     WIDGET_HEAD "0x2A fontid uint8, 0x2C halign uint8, 0x2D valign uint8, 0x29 border uint8, "
     "0x50 modal BOOL, 0x2F mode uint8, 0x42 timeout int32, 0x36 icon uint16, "
     "0x37 label \"UTF8\", 0x08 count uint8, 0x90 action_icon uint16 [4], "
     "0x91 action_label \"UTF8\" [4], 0x92 action_value \"UTF8\" [4], "
     "0x95 action_key uint16 [4]"},
    {0x8C, "sliderbar", Tab_sliderbar,
     WIDGET_HEAD "0x2A fontid uint8, 0x2C halign uint8, 0x2D valign uint8, 0x36 icon uint16, "
     "0x37 label \"UTF8\", 0x38 value int32, 0x43 min int32, 0x44 max int32, "
     "0x40 incdec uint8, 0x29 border uint8"},
    {0x8D, "progressbar", Tab_progressbar,
     WIDGET_HEAD "0x2A fontid uint8, 0x2C halign uint8, 0x2D valign uint8, 0x36 icon uint16, "
     "0x37 label \"UTF8\", 0x38 value uint8, 0x41 value_notify uint8"},
    {0x8E, "imagebox", Tab_imagebox,
     WIDGET_HEAD "0x3F format uint8, 0x2E size uint32, 0x45 data \"UTF8\", 0x48 append \"UTF8\", "
     "0x72 URI \"UTF8\""},
    {0x8F, "iconbox", Tab_iconbox,
     WIDGET_HEAD "0x36 icon uint16"},
    {0x90, "AOMVbox", Tab_AOMVbox,
     WIDGET_HEAD "0x78 page_active uint8"},
    {0x91, "telephonicbox", Tab_telephonicbox,
     WIDGET_HEAD "0x1D enable BOOL, 0x4C vsplit uint8, 0x42 timeout uint32"},
    {0x92, "keyboard_context", Tab_keyboard_context,
     "0x00 objectid uint16, 0x01 ownership uint8, 0x09 eventmode uint8, "
     "0x0A numpad_ownership uint8, 0x0B navigator_ownership uint8, "
     "0x0C telephony_ownership uint8, 0x0D progkeys_ownership uint8, "
     "0x52 softkeys_ownership uint8, 0x0E alphakeys_ownership uint8, "
     "0x0F numpad_eventmode uint8, 0x08 count uint8, 0x83 key_ownership uint8 [78], "
     "0x84 key_eventmode uint8 [78]"},
    {0x93, "AOMEL", Tab_AOMEL,
     "0x00 objectid uint16, 0x1E address uint8, 0x14 contrast uint8, 0x09 eventmode uint8, "
     "0x08 count uint8, 0x88 Dtype uint8 [14], 0x89 Dicon uint16 [14], "
     "0x8A Dlabel \"UTF8\" [14], 0x85 Dvalue uint32 [14], 0x8B Downership uint8 [14], "
     "0x6C all_icons_off BOOL, 0x6D all_labels_off BOOL"},
    {0x94, "AOM10", Tab_AOM10,
     "0x00 objectid uint16, 0x1E address uint8, 0x14 contrast uint8, 0x09 eventmode uint8, "
     "0x08 count uint8, 0x88 Dtype uint8 [10], 0x89 Dicon uint16 [10], "
     "0x85 Dvalue uint32 [10], 0x8B Downership uint8 [10], 0x6C all_icons_off BOOL"},
    {0x95, "AOM40", Tab_AOM40,
     "0x00 objectid uint16, 0x1E address uint8, 0x14 contrast uint8, 0x09 eventmode uint8, "
     "0x08 count uint8, 0x88 Dtype uint8 [40], 0x89 Dicon uint16 [40], "
     "0x85 Dvalue uint32 [40], 0x8B Downership uint8 [40], 0x6C all_icons_off BOOL"},
    {0x96, "idletimer", Tab_idletimer,
     "0x00 objectid uint16, 0x41 value_notify uint32"},
    {0x97, "telephonicboxitem", Tab_telephonicboxitem,
     "0x00 objectid uint16, 0x24 anchorid uint16, 0x36 icon uint16, 0x4D accesskey uint8, "
     "0x3D focus BOOL, 0x37 label \"UTF8\""},
    {0x98, "bluetooth_device", Tab_bluetooth_device,
     "0x00 objectid uint16, 0x24 anchorid uint16, 0x1E address \"UTF8\", 0x21 name \"UTF8\", "
     "0x54 cod uint32, 0x55 bonded BOOL, 0x05 type uint8, 0x56 link_key \"UTF8\", "
     "0x57 pin \"UTF8\""},
    {0x99, "headerbox", Tab_headerbox,
     WIDGET_HEAD "0x2A fontid uint8, 0x36 icon uint16, 0x37 label \"UTF8\""},
    {0x9A, "ime_context", Tab_ime_context,
     "0x00 objectid uint16, 0x1D enable BOOL, 0x28 visible BOOL, 0x05 type uint8, "
     "0x42 timeout uint32, 0x51 session_timeout uint32, 0x86 Dmode BOOL [3], "
     "0x8E Dname \"UTF8\" [8], 0x8C Denable BOOL [8], 0x8D Dstate BOOL [8]"},
};

// clang-format on

#undef WIDGET_HEAD

}  // namespace ztdecode::testing
