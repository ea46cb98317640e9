# Deletes the lock file of this user, under the feet of every other test that two writers have.
set_tests_properties("KarvexFaults.NoAdditionIsLostWhenTheLockFileIsDeleted" PROPERTIES RUN_SERIAL TRUE)
