SELECT name,xtype,id FROM sysobjects o WHERE id IN (SELECT id FROM syscolumns WHERE xtype=175) ORDER BY 1,2 DESC
