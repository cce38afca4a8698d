# SPDX-License-Identifier: Apache-2.0
# Lines for a product's makefile. One path file per product.
PRODUCT_PACKAGES += libtarnix_uwb_params_nfcc

PRODUCT_COPY_FILES += \
    vendor/tarnix/uwb_params_nfcc/examples/vendor/etc/uwb_calib_paths.conf:$(TARGET_COPY_OUT_VENDOR)/etc/uwb_calib_paths.conf \
    vendor/tarnix/uwb_params_nfcc/examples/vendor/etc/uwb/common.conf:$(TARGET_COPY_OUT_VENDOR)/etc/uwb/common.conf \
    vendor/tarnix/uwb_params_nfcc/examples/vendor/etc/uwb/us/calib.conf:$(TARGET_COPY_OUT_VENDOR)/etc/uwb/us/calib.conf \
    vendor/tarnix/uwb_params_nfcc/examples/vendor/etc/uwb/default/calib.conf:$(TARGET_COPY_OUT_VENDOR)/etc/uwb/default/calib.conf

# Only where the path file lies elsewhere:
# PRODUCT_VENDOR_PROPERTIES += ro.vendor.uwb.calibration.calibrationpaths=/vendor/etc/uwb/paths_b.conf
