#pragma once
// All task handlers of the table. `name` without "$", `args` expanded, `data` the pass number (int32_t*) or
// null. Every handler returns 1.
#include <cstdint>

#define VT_TASKS(X)                                                                                        \
  X(remove_atm_font)                                                                                       \
  X(remove_old_atm_font)                                                                                   \
  X(atm_fontchange_notify) X(install_tt_font) X(remove_font_name) X(remove_tt_font) X(register)            \
      X(register_dll) X(add_reg_chk_exist) X(remove_reg_chk_exist) X(tt_fontchange_notify) X(add_icon)     \
          X(add_icon_group) X(empty_icon_group) X(remove_icon_group) X(ask_view_readme)                    \
              X(set_all_autoconverts) X(set_one_autoconvert) X(run_ole_mgr) X(remove_ini_path) X(file_sys) \
                  X(dir_del) X(file_inst) X(convert_pref) X(get_ini_var) X(test_ATM_on)                    \
                      X(test_overwrite_old_app) X(set_word_macro) X(check_unsupported_office_version)      \
                          X(fixup_word_migration) X(run_word_macro) X(remove_word_macro) X(set_ppt_macro)  \
                              X(run_ppt_macro) X(remove_ppt_macro) X(notify_message) X(ask_choose_lang)    \
                                  X(remove_soft_fonts) X(create_link) X(stub_reg)                          \
                                      X(clean_old_winini_ext_reg) X(clean_others_ext_reg)                  \
                                          X(add_openwith_support) X(remove_openwith_support)

#define VT_DECLARE_TASK(task) int32_t Task_##task(const char* name, const char* args, void* data);
VT_TASKS(VT_DECLARE_TASK)
#undef VT_DECLARE_TASK
