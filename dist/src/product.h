#ifndef DIST_SRC_PRODUCT_H
#define DIST_SRC_PRODUCT_H
/* What the stand-in programs of the sample product share. The class identifier is also in setup.inf. */

#define PRODUCT_CLASS_ID "{C60857EB-FDFC-49B5-B705-033F54CED203}"
#define PRODUCT_PROG_ID "Equation.KVRX36"
#define PRODUCT_CLASS_NAME "Veltrane 6.0 Equation"
#define HELPER_CLASS_ID "{EB703DA8-879C-4F56-AA0A-E7300559CB2F}"
#define HELPER_CLASS_NAME "Veltrane 6.0 Preview"
#define PREFERENCES_KEY "Software\\Quorvale\\KVRX6\\Preferences"

#endif
