// SPDX-License-Identifier: Apache-2.0

// Reads the named Android.bp files with the platform build's own definitions of module types and
// properties, and prints what they reject.
package main

import (
	"fmt"
	"os"
	"regexp"

	"android/soong/android"
	_ "android/soong/cc"
	_ "android/soong/etc"
)

// Names that are newer than the definitions of 2020 that are at hand.
var newer = regexp.MustCompile(`unrecognized (module type "license"|property "default_applicable_licenses")$`)

func main() {
	context := android.NewContext()
	context.Register()
	config := android.TestConfig(os.TempDir(), nil, "", nil)
	_, rejected := context.ParseFileList(".", os.Args[1:], config)
	status := 0
	for _, err := range rejected {
		if !newer.MatchString(err.Error()) {
			fmt.Println(err)
			status = 1
		}
	}
	os.Exit(status)
}
