#pragma once
// All task handlers, in the order of the task table. `name` without "$", `args` expanded, `data` the pass
// number (int32_t*) or null. Every handler returns 1.
#include <cstdint>

#define VT_DECLARE_TASK(task) int32_t Task_##task(const char* name, const char* args, void* data)

VT_DECLARE_TASK(remove_atm_font);
VT_DECLARE_TASK(remove_old_atm_font);
VT_DECLARE_TASK(atm_fontchange_notify);
VT_DECLARE_TASK(install_tt_font);
VT_DECLARE_TASK(remove_font_name);
VT_DECLARE_TASK(remove_tt_font);
VT_DECLARE_TASK(register);
VT_DECLARE_TASK(register_dll);
VT_DECLARE_TASK(add_reg_chk_exist);
VT_DECLARE_TASK(remove_reg_chk_exist);
VT_DECLARE_TASK(tt_fontchange_notify);
VT_DECLARE_TASK(add_icon);
VT_DECLARE_TASK(add_icon_group);
VT_DECLARE_TASK(empty_icon_group);
VT_DECLARE_TASK(remove_icon_group);
VT_DECLARE_TASK(ask_view_readme);
VT_DECLARE_TASK(set_all_autoconverts);
VT_DECLARE_TASK(set_one_autoconvert);
VT_DECLARE_TASK(run_ole_mgr);
VT_DECLARE_TASK(remove_ini_path);
VT_DECLARE_TASK(file_sys);
VT_DECLARE_TASK(dir_del);
VT_DECLARE_TASK(file_inst);
VT_DECLARE_TASK(convert_pref);
VT_DECLARE_TASK(get_ini_var);
VT_DECLARE_TASK(test_ATM_on);
VT_DECLARE_TASK(test_overwrite_old_app);
VT_DECLARE_TASK(set_word_macro);
VT_DECLARE_TASK(check_unsupported_office_version);
VT_DECLARE_TASK(fixup_word_migration);
VT_DECLARE_TASK(run_word_macro);
VT_DECLARE_TASK(remove_word_macro);
VT_DECLARE_TASK(set_ppt_macro);
VT_DECLARE_TASK(run_ppt_macro);
VT_DECLARE_TASK(remove_ppt_macro);
VT_DECLARE_TASK(notify_message);
VT_DECLARE_TASK(ask_choose_lang);
VT_DECLARE_TASK(remove_soft_fonts);
VT_DECLARE_TASK(create_link);
VT_DECLARE_TASK(stub_reg);
VT_DECLARE_TASK(clean_old_winini_ext_reg);
VT_DECLARE_TASK(clean_others_ext_reg);
VT_DECLARE_TASK(add_openwith_support);
VT_DECLARE_TASK(remove_openwith_support);

#undef VT_DECLARE_TASK
